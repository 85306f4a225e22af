// Calls into the frameworks that may raise an exception. Thread: any.
#pragma once

#import <Foundation/Foundation.h>

#include <type_traits>

extern "C" id corvaneCallGuarded(void (*call)(void*), void* context);

namespace corvane {

/// Calls `action` and answers the exception that it raised, autoreleased, or nil. The only place in which
/// one is caught: GNU's Objective-C++ crashes on a catch clause for one, so it stands in a plain C file.
template <typename Action>
NSException* guarded(Action&& action) {
  using Callable = std::remove_reference_t<Action>;
  return corvaneCallGuarded([](void* context) { (*static_cast<Callable*>(context))(); },
                            const_cast<void*>(static_cast<const void*>(&action)));
}

}  // namespace corvane
