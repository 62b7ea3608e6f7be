#pragma once
#include "shell/MDIMain.h"
