#include "forms/SaveData.h"

#include "forms/MessageBox.h"
#include "forms/ResultList.h"
#include "runs/SavedRun.h"

#include <QFileDialog>
#include <QSaveFile>

namespace forms {

namespace {

FileChooser& chooser() {
    static FileChooser c;
    return c;
}

constexpr const char* kSaveTitle = "Save Data";

} // namespace

QString chooseSaveFile(QWidget* parent, const QString& title, const QString& suggested,
                       const QString& filter) {
    if (chooser()) return chooser()(parent, title, suggested, filter);
    return QFileDialog::getSaveFileName(parent, title, suggested, filter);
}

void setFileChooser(FileChooser c) {
    chooser() = std::move(c);
}

bool writeWhole(const QString& path, const std::function<bool(QIODevice&)>& write) {
    QString why;
    {
        // The temporary file stands beside the target, so the rename cannot cross disks;
        // one that is never committed goes with the QSaveFile, before any box is shown.
        QSaveFile file(path);
        if (file.open(QIODevice::WriteOnly) && write(file) && file.commit()) return true;
        why = file.errorString();
    }
    message(kSaveTitle,
            "The file could not be written:\n" + path.toStdString() + "\n" + why.toStdString() +
                "\nNothing was saved; the panel keeps its data.",
            qz::MsgIcon::Exclamation);
    return false;
}

bool saveData(QWidget* parent, const QString& suggested, const std::vector<std::string>& header,
              const ResultList& list) {
    const QString path = chooseSaveFile(parent, QString::fromLatin1(kSaveTitle), suggested,
                                        QStringLiteral("Text files (*.txt);;All files (*)"));
    if (path.isEmpty()) return false;
    const std::string text = qz::savedText(header, list.lines());
    return writeWhole(path, [&text](QIODevice& device) {
        return device.write(text.data(), static_cast<qint64>(text.size())) ==
               static_cast<qint64>(text.size());
    });
}

} // namespace forms
