#include "ui/fields/FieldControl.h"

#include <QScrollArea>
#include <QTabWidget>
#include <QVariant>

namespace plinket3 {

namespace {

constexpr const char* fieldsProperty = "plinket3Fields";

QVariantList FieldsOf(const QWidget& control) { return control.property(fieldsProperty).toList(); }

/// Turns to the pages and scrolls the areas that hold it.
void BringIntoView(QWidget& control, const QWidget& window) {
    for (QWidget* inner = &control; inner != &window; inner = inner->parentWidget())
        if (auto* tabs = qobject_cast<QTabWidget*>(inner); tabs != nullptr)
            for (int page = 0; page < tabs->count(); ++page)
                if (tabs->widget(page)->isAncestorOf(&control))
                    tabs->setCurrentIndex(page);
    for (QWidget* inner = &control; inner != &window; inner = inner->parentWidget())
        if (auto* area = qobject_cast<QScrollArea*>(inner); area != nullptr)
            area->ensureWidgetVisible(&control);
}

} // namespace

void ForField(QWidget& control, int field) {
    QVariantList fields = FieldsOf(control);
    fields.append(field);
    control.setProperty(fieldsProperty, fields);
}

std::optional<int> FieldAt(const QWidget* control) {
    const QVariantList fields = control == nullptr ? QVariantList() : FieldsOf(*control);
    return fields.isEmpty() ? std::nullopt : std::optional(fields.front().toInt());
}

bool FocusField(QWidget& window, int field) {
    for (QWidget* control : window.findChildren<QWidget*>()) {
        // One on another page is there; one that the engine does not have was hidden itself.
        const bool madeJustNow = !control->testAttribute(Qt::WA_WState_ExplicitShowHide); // is shown a moment later
        if ((control->isHidden() && !madeJustNow) || !control->isEnabled() || !FieldsOf(*control).contains(field))
            continue;
        control->show();
        BringIntoView(*control, window);
        control->setFocus(Qt::ShortcutFocusReason);
        return true;
    }
    return false;
}

} // namespace plinket3
