#pragma once
// A tab control whose tabs stand in rows, so that every caption shows in full.
// Its click operation runs when the tab changes, whether the user or code changed it.

#include <QWidget>

#include <functional>
#include <vector>

class QButtonGroup;
class QGridLayout;
class QPushButton;
class QStackedWidget;

namespace forms {

class TabControl : public QWidget {
    Q_OBJECT
public:
    TabControl(const QString& name, int tabsPerRow, QWidget* parent = nullptr);

    // Adds a page; returns its tab index.
    int addTab(QWidget* page, const QString& caption);
    int count() const { return static_cast<int>(tabs_.size()); }
    int currentIndex() const { return current_; }
    // Shows tab i; runs the click operation when it was not the current one.
    void setCurrentIndex(int i);
    QWidget* page(int i) const;
    QPushButton* tabButton(int i) const { return tabs_[static_cast<size_t>(i)]; }

    // handler(previous tab)
    void onClick(std::function<void(int)> handler) { handler_ = std::move(handler); }

private:
    int tabsPerRow_;
    int current_ = -1;
    std::vector<QPushButton*> tabs_;
    QGridLayout* strip_;
    QStackedWidget* stack_;
    std::function<void(int)> handler_;
};

} // namespace forms
