#pragma once

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
