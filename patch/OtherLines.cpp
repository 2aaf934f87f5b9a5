#include "patch/OtherLines.h"

#include "patch/modPatchFiles.h"

#include <algorithm>
#include <utility>

namespace plinket3 {

namespace {

class Collector : public modPatchFiles::ReadObserver {
public:
    explicit Collector(std::string_view bytes) : bytes_(bytes) {}

    void Line(std::size_t offset, std::string_view text) override {
        if (ofNobody_ && !header_ && !text_.empty() && !text_.starts_with('#'))
            Add("belongs to a record that the engine does not have");
        number_ += static_cast<std::size_t>(std::count(bytes_.begin() + static_cast<std::ptrdiff_t>(offset_),
                                                       bytes_.begin() + static_cast<std::ptrdiff_t>(offset), '\n'));
        offset_ = offset;
        text_ = Trim(text);
        header_ = false;
        if (text_.empty() && !section_.starts_with('[')) { // those in brackets go on behind it
            section_ = {};
            ofNobody_ = false;
        }
    }
    void Section(std::size_t, std::string_view) override {
        section_ = text_;
        header_ = true;
        ofNobody_ = false;
    }
    void Ignored(std::size_t, std::string_view reason) override {
        ofNobody_ = ofNobody_ || header_;
        Add(std::string(reason));
    }
    void OtherString(std::size_t, std::string_view, std::string_view) override {
        Add("names a string that the engine does not have");
    }

    std::vector<OtherLine> lines;

private:
    /// One line gets one row.
    void Add(std::string reason) {
        if (lines.empty() || lines.back().line != number_)
            lines.push_back({number_, std::string(section_), std::string(text_), std::move(reason)});
    }

    std::string_view bytes_, text_, section_;
    std::size_t offset_ = 0, number_ = 1;    // of the line that is read
    bool header_ = false, ofNobody_ = false; // it is one; it stands under one that selects nothing
};

} // namespace

std::vector<OtherLine> OtherLines(std::string_view bytes, const EngineConfiguration& engine, const PatchSet& defaults) {
    PatchSet set;
    Collector collector(bytes);
    static_cast<void>(modPatchFiles::ParsePatch(bytes, engine, defaults, set, &collector));
    collector.Line(bytes.size(), {}); // ends the last one
    return std::move(collector.lines);
}

} // namespace plinket3
