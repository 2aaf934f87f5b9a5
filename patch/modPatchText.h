#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// Small text conversions that patch writer, patch reader, command line and editors share.
namespace plinket3::modPatchText {

/// For values of [STRINGS]: backslash, line feed, carriage return, tab and double quote become escapes.
std::string EscapeText(std::string_view text);
/// Kept: the inverse in the same order of replacements, so that a backslash before the letter n, escaped, comes back as
/// a line feed. docs/kept-behaviour.md
std::string UnescapeText(std::string_view text);

/// Puts a carriage return and a line feed behind every escape backslash-n, for fields of several lines ...
std::string ShowLineBreaks(std::string_view text);
/// ... and takes them away again.
std::string HideLineBreaks(std::string_view text);

/// Takes `count` logical characters from `text` at `position`, which moves on: a carriage return with a line feed
/// counts as one and gives a line feed; a carriage return with another character counts as one and gives both. Fewer
/// when the text ends; none for a count below 1.
std::string ReadCountedCharacters(std::string_view text, std::size_t& position, std::int32_t count);

/// The count with which `ReadCountedCharacters` has given `text`: less than its size only when it holds carriage
/// returns.
std::int32_t CountCharacters(std::string_view text);

/// Bit `bit` (0, the least significant, to 31) of a value; other bits are never set and change nothing.
bool GetFlag(std::int32_t value, int bit);
std::int32_t SetFlag(std::int32_t value, int bit);
std::int32_t RemoveFlag(std::int32_t value, int bit);

/// Fills a cheat up with the character 255 to the length in the low 16 bits of `maximumLength`.
std::string PadCheat(std::string_view text, std::int32_t maximumLength);
/// Turns every character 255 into a blank and trims.
std::string UnpadCheat(std::string_view text);

/// A thing's bits as a patch writes them: by name the mnemonics of the set bits joined by " + " (set bits
/// beyond the mnemonics are left out), else the unsigned decimal; "0" for 0.
std::string FormatBits(std::int32_t bits, bool byName, std::span<const std::string> mnemonics);
/// Whether every bit that is set has a mnemonic.
bool AllNamed(std::span<const std::string> mnemonics, std::int32_t bits);

/// E1M1 for an episode other than 0, else MAP01.
std::string LevelName(std::int32_t episode, std::int32_t map);

/// The longest text that fits the space of an engine's text of `length` characters: with its end mark it fills whole
/// units of 4 bytes.
constexpr std::int32_t TextSpace(std::int32_t length) { return length / 4 * 4 + 3; }

} // namespace plinket3::modPatchText
