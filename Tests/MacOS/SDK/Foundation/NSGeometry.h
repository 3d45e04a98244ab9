#pragma once

#import <Foundation/NSObjCRuntime.h>

typedef double CGFloat;

typedef struct CGPoint {
  CGFloat x;
  CGFloat y;
} NSPoint;

typedef struct CGSize {
  CGFloat width;
  CGFloat height;
} NSSize;

typedef struct CGRect {
  NSPoint origin;
  NSSize size;
} NSRect;

static inline CGFloat NSMinX(NSRect rect) { return rect.origin.x; }
static inline CGFloat NSMaxX(NSRect rect) { return rect.origin.x + rect.size.width; }
static inline CGFloat NSMinY(NSRect rect) { return rect.origin.y; }
static inline CGFloat NSMaxY(NSRect rect) { return rect.origin.y + rect.size.height; }
static inline CGFloat NSWidth(NSRect rect) { return rect.size.width; }
