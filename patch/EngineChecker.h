#pragma once

#include "core/Numbers.h"
#include "core/Text.h"
#include "patch/CheckFindings.h"
#include "patch/EngineNames.h"

#include <string>

namespace plinket3::modPatchCheck {

/// What there is to say of a patch by engine rules: what the game will not take, or engines read differently.
class EngineChecker : public CheckFindings {
public:
    using CheckFindings::CheckFindings;

    void Number(std::size_t offset, FieldUnit unit, FieldWidth, std::string_view text) override {
        const std::string_view number = Trim(text);
        const std::size_t sign = number.starts_with('-') || number.starts_with('+') ? 1 : 0;
        const auto digit = [number](std::size_t at) {
            return at < number.size() && number[at] >= '0' && number[at] <= '9';
        };
        if (!digit(sign))
            Add(offset, "holds no number and is read as 0");
        else if (number[sign] == '0' && digit(sign + 1) && EngineInt32(number) != LeadingInt32(number))
            Add(offset, "is octal for dsda-doom, " + std::to_string(EngineInt32(number)) +
                            ", where the newest woof reads decimals");
        Reference(offset, unit, EngineInt32(text));
    }

    void FlagNames(std::size_t offset, std::string_view text) override {
        for (const std::string_view word : BitWords(text))
            if (!BitNamed(engine_.BitNames(BitSet::Things), word))
                Add(offset, "names a flag that the engine does not know, " + Quoted(word));
    }

    void OtherString(std::size_t offset, std::string_view key, std::string_view) override {
        Add(offset, "names a string that the engine does not have, " + Quoted(key) + "; it is kept");
    }
};

} // namespace plinket3::modPatchCheck
