#pragma once
// Results to a file the operator chooses: the "SAVE DATA..." of every run's list and the
// picture of a chart. A file is written under a temporary name beside its target and
// renamed once complete, so a failure never leaves half a file; a failure is told in a
// message box, and the panel keeps all it shows.

#include <QString>

#include <functional>
#include <string>
#include <vector>

class QIODevice;
class QWidget;

namespace forms {

class ResultList;

// Asks for the file to write: the path, or empty when the operator cancels.
using FileChooser = std::function<QString(QWidget* parent, const QString& title,
                                          const QString& suggested, const QString& filter)>;
QString chooseSaveFile(QWidget* parent, const QString& title, const QString& suggested,
                       const QString& filter);
// Puts another chooser in place of the dialog (tests); an empty one restores it.
void setFileChooser(FileChooser chooser);

// Writes the file through write, all or nothing; false after the message box of a failure.
bool writeWhole(const QString& path, const std::function<bool(QIODevice&)>& write);

// "SAVE DATA...": asks for a file, then writes the header lines and the list's lines,
// each with CR LF, the list's being exactly the text the clipboard takes. True once written.
bool saveData(QWidget* parent, const QString& suggested, const std::vector<std::string>& header,
              const ResultList& list);

} // namespace forms
