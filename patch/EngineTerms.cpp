#include "patch/EngineTerms.h"

#include "patch/EngineNames.h"
#include "patch/modPatchText.h"

#include <algorithm>

namespace plinket3 {

std::optional<std::int32_t> ActionIn(const EngineConfiguration& to, const EngineConfiguration& from,
                                     std::int32_t codePointer) {
    const std::string* mnemonic = from.MnemonicOf(codePointer);
    return mnemonic == nullptr ? std::optional(codePointer) : to.CodePointerOf(*mnemonic);
}

std::int32_t BitsLostIn(const EngineConfiguration& to, const EngineConfiguration& from, BitSet set) {
    const std::vector<std::string>& names = from.BitNames(set);
    std::int32_t bits = 0;
    for (int bit = 0; bit < static_cast<int>(std::min<std::size_t>(names.size(), 32)); ++bit)
        if (const std::string& name = names[static_cast<std::size_t>(bit)];
            !name.empty() && BitNamed(to, set, name) != bit)
            bits = modPatchText::SetFlag(bits, bit);
    return bits;
}

std::optional<std::int32_t> StringIn(const EngineConfiguration& to, const PatchSet& toDefaults,
                                     const EngineConfiguration& from, const PatchSet& fromDefaults,
                                     std::int32_t number) {
    const auto place = static_cast<std::size_t>(number);
    if (from.dialect.keyedTexts && to.dialect.keyedTexts && number >= 0 && place < from.strings.size()) {
        const auto same =
            std::ranges::find(to.strings, from.strings[place].mnemonic, &EngineConfiguration::String::mnemonic);
        return same == to.strings.end() ? std::nullopt
                                        : std::optional(static_cast<std::int32_t>(same - to.strings.begin()));
    }
    const StringRecord* string = fromDefaults.strings.Find(number);
    for (const auto& [other, record] : toDefaults.strings)
        if (string != nullptr && record.text == string->text)
            return other;
    return std::nullopt;
}

} // namespace plinket3
