#include "patch/PatchDocument.h"

#include "core/Text.h"
#include "patch/PatchNotes.h"

#include <utility>

namespace plinket3 {

/// Notes for every line what the reader did with it.
class PatchDocument::Builder : public modPatchFiles::ReadObserver {
public:
    Builder(PatchDocument& document, const Dialect& dialect)
        : document_(document), dialect_(dialect), words_(dialect) {}

    void Line(std::size_t offset, std::string_view text) override {
        DocumentLine& line = document_.lines_.emplace_back(); // in its place: a copy that waits for its parts is slow
        line.offset = static_cast<std::uint32_t>(offset);
        text = TrimLeft(text);
        if (text.empty())
            line.what = LineKind::Blank;
        else if (text.starts_with(dialect_.comment))
            line.what = LineKind::Comment;
    }
    void Section(std::size_t, std::string_view word) override {
        Last().what = LineKind::Header;
        Last().field = static_cast<std::int16_t>(words_.Named(word)->section);
    }
    void Selected(std::size_t, RecordKind kind, std::int32_t index) override {
        Last().kind = kind;
        Last().index = index;
    }
    void Stored(std::size_t, const Cell& cell, std::string_view) override {
        Last().what = Last().what == LineKind::Header ? LineKind::Text : LineKind::Value;
        Last().kind = cell.kind;
        Last().index = cell.index;
        Last().field = static_cast<std::int16_t>(cell.field);
    }
    void OtherString(std::size_t, std::string_view key, std::string_view text) override {
        document_.otherStrings_.push_back({std::string(key), std::string(text)});
    }
    void Renamed(std::size_t, RecordKind kind, std::string_view from, std::string_view to) override {
        document_.renames_.push_back({kind, std::string(from), std::string(to)});
    }

private:
    DocumentLine& Last() { return document_.lines_.back(); }

    PatchDocument& document_;
    const Dialect& dialect_;
    SectionWords words_;
};

modPatchFiles::ReadResult PatchDocument::Read(std::string bytes, const EngineConfiguration& engine,
                                              const PatchSet& defaults, PatchSet& set,
                                              const modPatchFiles::IncludeReader& includes) {
    *this = PatchDocument();
    bytes_ = std::move(bytes);
    const std::size_t firstEnd = bytes_.find('\n');
    if (firstEnd != std::string::npos && firstEnd > 0 && bytes_[firstEnd - 1] == '\r')
        lineEnd_ = "\r\n";
    constexpr std::size_t usualLine = 16; // room that stays unused is address space only
    lines_.reserve(bytes_.size() / usualLine + 1);
    Builder builder(*this, engine.dialect);
    modPatchFiles::ReadResult result = modPatchFiles::ParsePatch(bytes_, engine, defaults, set, &builder, includes);
    set.notes = ReadNotes(*this);
    said_ = set;
    return result;
}

std::string_view PatchDocument::Text(std::size_t line) const {
    std::string_view text = std::string_view(bytes_).substr(lines_[line].offset, End(line) - lines_[line].offset);
    if (text.ends_with('\n'))
        text.remove_suffix(1);
    if (text.ends_with('\r'))
        text.remove_suffix(1);
    return text;
}

} // namespace plinket3
