#pragma once

#include <cstdint>
#include <string_view>

namespace plinket3 {

// Negative numbers are shared out among those who make engines and standards: patches change what has one, and give
// none to anything of their own.

/// To whom a negative number belongs, in words that follow "belongs to": "id Software"; empty for numbers from 0 up,
/// which are the patches'.
std::string_view OwnerOfNumber(std::int32_t number);
/// The same for the ID number of a thing in maps, of which 16 bits count.
std::string_view OwnerOfId(std::int32_t id);

} // namespace plinket3
