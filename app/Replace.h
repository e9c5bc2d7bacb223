// Replaces an owned object by a copy of another.
#pragma once

// The old object goes first: `held` dangles if the copy then fails, and must not be `value`.
template <typename Object>
void Replace(Object *& held, Object const & value) {
    delete held;
    held = new Object(value);
}
