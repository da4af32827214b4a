#pragma once
#include "high/top.h"
#include "low/ok.h"
