#pragma once

#include "platform/guarded.h"

#include <QObject>

#include <functional>
#include <type_traits>
#include <utility>

namespace orvel {

/// Connects a signal with a handler inside the boundary for errors. The handler is a member function of the receiver or
/// anything that can be called, with the signal's arguments or with none.
template <class Sender, class Signal, class Receiver, class Handler>
QMetaObject::Connection on(Sender *sender, Signal signal, Receiver *receiver, Handler handler) {
    return QObject::connect(sender, signal, receiver, [receiver, handler](auto &&...arguments) -> void {
        static_cast<void>(receiver); // only a member function needs it
        guarded([&] {
            if constexpr (std::is_member_function_pointer_v<Handler>) {
                if constexpr (std::is_invocable_v<Handler, Receiver *, decltype(arguments)...>) {
                    std::invoke(handler, receiver, arguments...);
                } else {
                    std::invoke(handler, receiver);
                }
            } else if constexpr (std::is_invocable_v<Handler, decltype(arguments)...>) {
                std::invoke(handler, arguments...);
            } else {
                std::invoke(handler);
            }
        });
    });
}

} // namespace orvel
