#pragma once
// A result list of any length. Its lines are plain strings kept in a model and laid out
// with uniform item sizes, so that a hundred thousand lines cost the panel no more than a
// few. Lines added during a run show at the next flush; the tabs of a line stand as
// columns.

#include <QListView>

#include <string>
#include <vector>

namespace forms {

class LinesModel;

class ResultList : public QListView {
  public:
    explicit ResultList(const QString& name, QWidget* parent = nullptr);

    void clear();
    // Keeps the line; it shows at the next flush.
    void addLine(std::string line);
    // Shows the lines kept since the last flush.
    void flush();
    // Every line, shown or still to be shown.
    const std::vector<std::string>& lines() const;
    int count() const { return static_cast<int>(lines().size()); }
    // Every line followed by CR LF, the last one too: the text the clipboard takes.
    std::string text() const;
    // Clears the clipboard and puts the text on it.
    void copyToClipboard() const;
    // The distance between the tab stops of a line, in pixels.
    void setTabStop(int pixels);

  private:
    LinesModel* model_;
};

} // namespace forms
