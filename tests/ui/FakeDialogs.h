#pragma once

#include "ui/FileDialogs.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>

namespace plinket3::test {

/// Answers file dialogs and prompts, each by its title; one that was not expected fails the test.
class FakeDialogs : public FileDialogs {
public:
    ~FakeDialogs() override { EXPECT_TRUE(expected_.empty()) << "never asked: " << expected_.front().title; }

    void Expect(std::string title, std::string answer) { expected_.push_back({std::move(title), std::move(answer)}); }

    QString OpenFile(const QString& title, const QString& filter) override { return Answer(title, filter); }
    /// The answer holds paths with "|" between them.
    QStringList OpenFiles(const QString& title, const QString& filter) override {
        return Answer(title, filter).split(QLatin1Char('|'), Qt::SkipEmptyParts);
    }
    QString SaveFile(const QString& title, const QString& filter, const QString&) override {
        return Answer(title, filter);
    }
    QString AskText(const QString& title, const QString& prompt, const QString&, Characters) override {
        return Answer(title, prompt);
    }

    /// The answer begins the row.
    int Choose(const QString& title, const QString& prompt, const QStringList& rows) override {
        const QString answer = Answer(title, prompt);
        for (int row = 0; row < rows.size(); ++row)
            if (!answer.isEmpty() && rows[row].startsWith(answer))
                return row;
        return -1;
    }

    std::string lastDetail; // the filter or prompt of the last one

private:
    struct Expected {
        std::string title, answer;
    };
    QString Answer(const QString& title, const QString& detail) {
        lastDetail = detail.toStdString();
        if (expected_.empty() || expected_.front().title != title.toStdString()) {
            ADD_FAILURE() << "dialog that was not expected: " << title.toStdString();
            return {};
        }
        QString answer = QString::fromStdString(expected_.front().answer);
        expected_.pop_front();
        return answer;
    }

    std::deque<Expected> expected_;
};

} // namespace plinket3::test
