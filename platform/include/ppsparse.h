#pragma once

/* The same interface under the name that older releases of the platform give it. */
#include "sys/pps.h"
