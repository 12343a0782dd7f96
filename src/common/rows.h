#pragma once

#include "common/walk.h"
