// CoreServices as far as this project uses it, declared as Apple's documentation does.
#pragma once

#include <CoreServices/AE.h>
#include <CoreServices/MacErrors.h>
#include <CoreServices/MacTypes.h>
