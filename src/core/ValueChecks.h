#pragma once
// Checks of what the user types where the file keeps it as text but the device
// reads it as something else: an initial value against its data type, an IPv4
// address. Each returns nothing when the value is right, otherwise the message to
// show, which says what the field accepts.
//
// Initial values, by the type table's row (the value as the user types it, no
// blanks; an empty value passes everywhere, the device then starts from zero):
//   bit                  a whole number that fits the data length in bits (1 to 7):
//                        0 .. 2^length - 1
//   char, short, long    a decimal whole number, optional sign, in the type's range
//                        (-128..127, -32768..32767, -2147483648..2147483647)
//   unsigned char/short/long
//                        a decimal whole number (0..255, 0..65535, 0..4294967295), or
//                        the same range written in hexadecimal with 0x (0xFF): masks
//                        and register values are usually written so
//   float, double        a decimal number with optional fraction and exponent
//                        (-1.5, 2e3) whose size the type can hold; no inf, nan or
//                        hexadecimal
//   string               at most the data length in bytes, counted as the device
//                        stores them (its code page)
//   array                not checked: its initial value has no form of its own
// A type index outside the table (none selected) is not checked either.

#include <optional>
#include <string>
#include <string_view>

namespace rq {

std::optional<std::string> checkInitialValue(int typeIndex, int length, std::string_view value);

// A data item's type and length as a file holds them (keyword, decimal text), for
// a value that is typed for an existing item (a parameter's initial value).
struct DataShape {
    int typeIndex = -1;
    int length = 0;
};
DataShape dataShapeOf(std::string_view typeKeyword, std::string_view lengthText);

// A dotted IPv4 address: four decimal numbers 0..255 separated by full stops, no
// blanks, no leading zeros (the device's address parser would read 010 as octal 8).
// An empty value passes: the dialogs have their own messages for a missing address.
// The message names the field by its label without the colon.
std::optional<std::string> checkIpv4Address(std::string_view fieldLabel, std::string_view value);

} // namespace rq
