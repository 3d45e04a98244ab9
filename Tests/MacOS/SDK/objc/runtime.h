// The Objective-C run time's functions, as far as this project uses them.
#pragma once

#include <objc/objc.h>

#ifdef __cplusplus
extern "C" {
#endif
IMP _Nullable class_getMethodImplementation(Class _Nullable cls, SEL _Nonnull name);
Class _Nullable object_getClass(id _Nullable object);
enum { OBJC_ASSOCIATION_RETAIN = 01401 };
void objc_setAssociatedObject(id _Nonnull object, const void *_Nonnull key, id _Nullable value,
                              unsigned long policy);
#ifdef __cplusplus
}
#endif
