#pragma once
#include <QDialog>
