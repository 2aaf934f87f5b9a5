#include "ui/lists/StringsModel.h"

#include "patch/modPatchText.h"
#include "ui/LatinText.h"

namespace plinket3 {

QString StringKey(const Session& session, std::int32_t string) {
    const auto& strings = session.engine.strings;
    return session.engine.dialect.keyedTexts && std::cmp_less(string, strings.size())
               ? ShownText(strings[static_cast<std::size_t>(string)].mnemonic)
               : QString();
}

QString StringsModel::Header(int column) const {
    if (column == numberColumn)
        return QStringLiteral("#");
    if (column == textColumn)
        return tr("Text");
    return context_.program.engine.dialect.keyedTexts ? tr("String") : tr("Length");
}

QString StringsModel::Text(const PatchSet& set, std::int32_t record, int column) const {
    const StringRecord* string = set.strings.Find(record);
    if (string == nullptr)
        return {};
    if (column == numberColumn)
        return QString::number(record);
    if (column == textColumn)
        return ShownStart(modPatchText::EscapeText(std::string_view(string->text).substr(0, longestShown + 1)));
    return context_.program.engine.dialect.keyedTexts ? StringKey(context_.program, record)
                                                      : QString::number(string->length);
}

/// Of a long text only the start is shown.
bool StringsModel::HasOtherValue(std::int32_t record, int column) const {
    return column == textColumn ? Current().strings[record].text != Defaults().strings[record].text
                                : RecordTableModel::HasOtherValue(record, column);
}

QString StringsModel::SearchText(std::int32_t record) const {
    return ShownText(modPatchText::EscapeText(Current().strings[record].text)) + '\n' +
           StringKey(context_.program, record);
}

bool StringsModel::IsNumber(int column) const {
    return column == numberColumn || (column == keyColumn && !context_.program.engine.dialect.keyedTexts);
}

} // namespace plinket3
