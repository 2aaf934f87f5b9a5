#include "tools/FixedUseFacts.h"

#include "patch/Links.h"

#include <algorithm>
#include <array>

namespace plinket3::tools {

namespace {

enum class Family { Doom, Boom, Mbf, Dehextra, Mbf21 };

Family FamilyOf(const EngineSource& source) {
    const auto builtOn = [&source](std::string_view folder) {
        return source.folder == folder || std::ranges::find(source.bases, folder) != source.bases.end();
    };
    return builtOn("mbf21")      ? Family::Mbf21
           : builtOn("dehextra") ? Family::Dehextra
           : builtOn("mbf")      ? Family::Mbf
           : source.extended     ? Family::Boom
                                 : Family::Doom;
}

/// The engines of a row by a word; another word names ports, which are heirs of Boom.
struct Engines {
    std::string_view word;
    Family first, last;
};
constexpr std::array engineWords{
    Engines{"all", Family::Doom, Family::Mbf21},     Engines{"doom", Family::Doom, Family::Doom},
    Engines{"doom..mbf", Family::Doom, Family::Mbf}, Engines{"boom+", Family::Boom, Family::Mbf21},
    Engines{"mbf+", Family::Mbf, Family::Mbf21},     Engines{"dehextra+", Family::Dehextra, Family::Mbf21},
    Engines{"mbf21", Family::Mbf21, Family::Mbf21},
};

} // namespace

std::string FormatFixedUses(const std::filesystem::path& folder, const EngineSource& source, const EngineFacts& facts,
                            Fault& fault) {
    const TsvTable table(folder / "hardcoded" / "uses.tsv", fault);
    const Family family = FamilyOf(source);
    std::string text;
    for (std::size_t row = 0; row < table.RowCount(); ++row) {
        const std::string_view word = table.Text(row, "engine"), action = table.Text(row, "action");
        const auto engines = std::ranges::find(engineWords, word, &Engines::word);
        const bool port = engines == engineWords.end();
        if (port ? family == Family::Doom : family < engines->first || family > engines->last)
            continue;
        const auto kind = TargetKindNamed(table.Text(row, "kind"));
        const std::int32_t first = table.Number(row, "index"),
                           last = table.Text(row, "last").empty() ? first : table.Number(row, "last", first);
        if (!kind)
            table.Report(row, "kind", "there is no such kind");
        if (!kind || (!action.empty() && !facts.engine.CodePointerOf(action)))
            continue; // a later engine's
        for (std::int32_t number = first; number <= last; ++number) {
            if (!HasTarget(facts.defaults, facts.engine, {*kind, number})) {
                if (!port) // which may have records that the engine does not have
                    table.Report(row, "index", "there is no such record");
                break;
            }
            const std::string digits = std::to_string(number);
            for (const std::string_view cell : {table.Text(row, "kind"), std::string_view(digits), action})
                (text += cell) += '\t';
            text += table.Text(row, "what");
            if (port)
                ((text += " (") += word) += ')';
            text += '\n';
        }
    }
    return text;
}

} // namespace plinket3::tools
