// SPDX-License-Identifier: MIT
#pragma once

/// Stores a property's value and emits its signal, when the value differs from the stored one. A floating
/// point value that is not a number differs from everything, itself included. Returns whether the value was
/// stored.
template <class Owner, class Value, class SignalOwner, class Argument>
bool storeAndEmitOnChange(Owner* owner, Value& stored, const Value& value,
                          void (SignalOwner::*changed)(Argument))
{
    if (stored == value)
        return false;
    stored = value;
    (owner->*changed)(stored);
    return true;
}

/// Stores a property's value and emits its signal in every case.
template <class Owner, class Value, class SignalOwner, class Argument>
void storeAndEmit(Owner* owner, Value& stored, const Value& value, void (SignalOwner::*changed)(Argument))
{
    stored = value;
    (owner->*changed)(stored);
}
