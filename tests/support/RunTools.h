#pragma once
// What the tests of the runs through their panels share: a clock that moves only when
// waited on and acts at a chosen wait (the operator's STOP in mid-run), and a file chooser
// that answers with a path of the test's, with the saved file read back.

#include "forms/SaveData.h"
#include "support/Harness.h"
#include "runs/Clock.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <functional>
#include <string>
#include <vector>

namespace qztest {

class ActingClock final : public qz::Clock {
  public:
    // Runs act at the start of the wait'th wait from now, counted from 1.
    void at(int wait, std::function<void()> act) {
        actAt_ = sleeps_ + wait;
        act_ = std::move(act);
    }

    double seconds() const override { return now_; }
    void sleep(double s) override {
        if (++sleeps_ == actAt_ && act_) act_();
        now_ += s;
    }

  private:
    double now_ = 0.0;
    int sleeps_ = 0, actAt_ = 0;
    std::function<void()> act_;
};

// Files saved into a fresh directory: each choice of a file is the path given last.
class SaveTarget {
  public:
    SaveTarget() {
        forms::setFileChooser([this](QWidget*, const QString&, const QString&, const QString&) {
            return chosen;
        });
    }
    ~SaveTarget() { forms::setFileChooser(Harness::cancelChoice); }

    QString path(const char* name) const { return dir.filePath(QString::fromLatin1(name)); }
    QStringList entries() const {
        return QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    // The file's "#" lines at its head, and all that follows them.
    struct Saved {
        std::vector<std::string> header;
        std::string rest;
    };
    static Saved read(const QString& path) {
        QFile f(path);
        f.open(QIODevice::ReadOnly);
        std::string text = f.readAll().toStdString();
        Saved s;
        while (!text.empty() && text[0] == '#') {
            const size_t end = text.find("\r\n");
            s.header.push_back(text.substr(0, end));
            text.erase(0, end == std::string::npos ? end : end + 2);
        }
        s.rest = text;
        return s;
    }

    QTemporaryDir dir;
    QString chosen;
};

} // namespace qztest
