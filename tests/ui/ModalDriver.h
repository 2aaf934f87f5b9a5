#pragma once

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

namespace plinket3::test {

/// Lets `act` loose on the next modal dialog of that object name, as soon as it is there; fails the test when the
/// dialog does not come within two seconds. Put it on the stack before what shows the dialog.
class ModalDriver {
public:
    ModalDriver(const char* name, std::function<void(QDialog&)> act) : name_(name), act_(std::move(act)) {
        QObject::connect(&timer_, &QTimer::timeout, [this] { Look(); });
        timer_.start(5);
    }
    ~ModalDriver() { EXPECT_TRUE(done_) << "the dialog " << name_.toStdString() << " did not come"; }

private:
    void Look() {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog != nullptr && dialog->objectName() == name_) {
            done_ = true;
            timer_.stop();
            act_(*dialog);
        } else if (++looks_ > 400) {
            timer_.stop();
            if (dialog != nullptr)
                dialog->reject();
        }
    }

    QString name_;
    std::function<void(QDialog&)> act_;
    QTimer timer_;
    int looks_ = 0;
    bool done_ = false;
};

} // namespace plinket3::test
