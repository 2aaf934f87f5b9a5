#include "patch/LocalCheck.h"

#include "patch/CellIndex.h"

#include <algorithm>
#include <array>
#include <optional>

namespace plinket3 {

namespace {

/// Notes what a read of some sections has set.
class Recorder : public modPatchFiles::ReadObserver {
public:
    explicit Recorder(const Dialect& dialect) : words_(dialect) {}

    void Section(std::size_t offset, std::string_view word) override {
        lastHeader = offset;
        const plinket3::Section section = words_.Named(word)->section;
        constexpr std::array others{plinket3::Section::Text, plinket3::Section::Sprites, plinket3::Section::Sounds,
                                    plinket3::Section::Music, plinket3::Section::Helper};
        plain = plain && std::ranges::find(others, section) == others.end();
    }
    void Stored(std::size_t, const Cell& cell, std::string_view) override {
        cells.push_back(cell);
        plain = plain && cell.kind != RecordKind::Par;
    }

    std::vector<Cell> cells;
    std::size_t lastHeader = 0;
    bool plain = true; // nothing but values that stand for themselves

private:
    SectionWords words_;
};

/// The lines from a header up to another one behind the changed part. Both are read as headers whatever stands before
/// them, so that what is outside reads as ever when the second one still is a header.
struct Window {
    std::size_t first = 0, end = 0;
};

bool IsHeader(const DocumentLine& line) {
    return line.what == LineKind::Header && static_cast<Section>(line.field) != Section::Text;
}

std::optional<Window> WindowAround(const std::vector<DocumentLine>& lines, const MergedPart& part) {
    const auto before = [](const DocumentLine& line, std::size_t offset) { return line.offset < offset; };
    auto first = std::lower_bound(lines.begin(), lines.end(), part.begin, before);
    do {
        if (first == lines.begin())
            return std::nullopt;
        --first;
    } while (!IsHeader(*first));
    const auto end = std::find_if(std::lower_bound(first + 1, lines.end(), part.end, before), lines.end(), IsHeader);
    return Window{static_cast<std::size_t>(first - lines.begin()), static_cast<std::size_t>(end - lines.begin())};
}

} // namespace

bool ReadsBackLocally(const PatchDocument& document, const PatchSet& current, const PatchSet& defaults,
                      const EngineConfiguration& engine, const MergedPart& part) {
    const std::vector<DocumentLine>& lines = document.Lines();
    const std::optional<Window> window = WindowAround(lines, part);
    if (!window)
        return false;
    const bool toTheEnd = window->end == lines.size();
    const std::size_t begin = lines[window->first].offset, grown = part.merged.Size() - document.Bytes().size();
    const std::size_t size = (toTheEnd ? part.merged.Size() : lines[window->end].offset + grown) - begin;
    const std::size_t behind = toTheEnd ? 0 : document.Text(window->end).size();
    Recorder recorder(engine.dialect);
    PatchSet read;
    if (!modPatchFiles::ParsePatch(part.merged.Part(begin, size + behind), engine, defaults, read, &recorder).status ||
        !recorder.plain || (!toTheEnd && recorder.lastHeader != size))
        return false;

    CellIndex cells;
    for (const Cell& cell : part.changed)
        cells.Add(cell);
    for (const Cell& cell : recorder.cells)
        cells.Add(cell);
    for (std::size_t line = window->first; line < window->end; ++line) {
        const DocumentLine& each = lines[line];
        if (each.what == LineKind::Text || (each.what == LineKind::Header && !IsHeader(each)) ||
            (each.what == LineKind::Value && each.kind == RecordKind::Par))
            return false;
        if (each.what == LineKind::Value)
            cells.Add({each.kind, each.index, each.field});
    }
    enum : unsigned char { None, Before, Behind };
    std::vector<unsigned char> setBy(cells.Count(), None); // where the last line stands that sets each
    CellIndex within;
    for (const Cell& cell : recorder.cells)
        within.Add(cell);
    cells.VisitLines(lines, [&](std::size_t line, std::size_t number) {
        if (line < window->first)
            setBy[number] = Before;
        else if (line >= window->end)
            setBy[number] = Behind;
    });
    bool same = true;
    cells.VisitCells([&](const Cell& cell, std::size_t number) {
        const bool isRead = within.Has(cell);
        const bool changed = std::ranges::find(part.changed, cell) != part.changed.end();
        if (setBy[number] == Behind)
            same = same && !changed;
        else if (setBy[number] == Before && !isRead)
            same = false; // that line was without effect and would have one
        else
            same = same && ReadCell(isRead ? read : defaults, cell) == ReadCell(current, cell);
    });
    return same;
}

} // namespace plinket3
