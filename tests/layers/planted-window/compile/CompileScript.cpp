#include "compile/frmCompile.h"
