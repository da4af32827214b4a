#pragma once
#include "low/ok.h"
