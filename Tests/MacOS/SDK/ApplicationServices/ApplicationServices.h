// ApplicationServices as far as this project uses it, declared as Apple's documentation does.
#pragma once

#import <ApplicationServices/Processes.h>
#import <CoreServices/CoreServices.h>
