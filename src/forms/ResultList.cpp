#include "forms/ResultList.h"

#include "registers/HexText.h"

#include <QAbstractListModel>
#include <QApplication>
#include <QClipboard>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTextOption>

#include <algorithm>

namespace forms {

class LinesModel : public QAbstractListModel {
  public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : shown_; }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole || !index.isValid() || index.row() >= shown_) return {};
        return QString::fromStdString(lines_[static_cast<size_t>(index.row())]);
    }

    void clear() {
        beginResetModel();
        lines_.clear();
        shown_ = 0;
        columns_ = 1;
        endResetModel();
    }
    void add(std::string line) {
        columns_ =
            std::max(columns_, static_cast<int>(std::count(line.begin(), line.end(), '\t')) + 1);
        lines_.push_back(std::move(line));
    }
    // The most columns of any line: every line is laid out as wide as the widest.
    int columns() const { return columns_; }
    void flush() {
        const int all = static_cast<int>(lines_.size());
        if (all == shown_) return;
        beginInsertRows({}, shown_, all - 1);
        shown_ = all;
        endInsertRows();
    }
    const std::vector<std::string>& lines() const { return lines_; }

  private:
    std::vector<std::string> lines_;
    int shown_ = 0;
    int columns_ = 1;
};

namespace {

// Draws a line with its tabs as columns at fixed stops.
class TabDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    int tabStop = 150;

    // Uniform item sizes take the size of one line for all: the widest.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        const auto* lines = static_cast<const LinesModel*>(index.model());
        size.setWidth(std::max(size.width(), lines->columns() * tabStop + 6));
        return size;
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem opt = option;
        initStyleOption(&opt, index);
        const QString text = opt.text;
        opt.text.clear();
        const QWidget* w = opt.widget;
        QStyle* style = w ? w->style() : QApplication::style();
        style->drawControl(QStyle::CE_ItemViewItem, &opt, painter, w);
        QTextOption to(Qt::AlignLeft | Qt::AlignVCenter);
        to.setTabStopDistance(tabStop);
        to.setWrapMode(QTextOption::NoWrap);
        painter->save();
        painter->setPen(opt.palette.color(QPalette::Normal, (opt.state & QStyle::State_Selected)
                                                                ? QPalette::HighlightedText
                                                                : QPalette::Text));
        painter->drawText(opt.rect.adjusted(3, 0, 0, 0), text, to);
        painter->restore();
    }
};

} // namespace

ResultList::ResultList(const QString& name, QWidget* parent)
    : QListView(parent), model_(new LinesModel(this)) {
    setObjectName(name);
    setModel(model_);
    setUniformItemSizes(true);
    setItemDelegate(new TabDelegate(this));
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    // Room for the longest default text of a number, 15 digits with sign, point and zeros.
    setTabStop(fontMetrics().horizontalAdvance(QStringLiteral("-0.000000000000000000")) + 14);
}

void ResultList::clear() {
    model_->clear();
}

void ResultList::addLine(std::string line) {
    model_->add(std::move(line));
}

void ResultList::flush() {
    model_->flush();
}

const std::vector<std::string>& ResultList::lines() const {
    return model_->lines();
}

std::string ResultList::text() const {
    return qz::ListTextBlock(model_->lines());
}

void ResultList::copyToClipboard() const {
    QClipboard* clipboard = QApplication::clipboard();
    clipboard->clear();
    clipboard->setText(QString::fromStdString(text()));
}

void ResultList::setTabStop(int pixels) {
    static_cast<TabDelegate*>(itemDelegate())->tabStop = pixels;
    viewport()->update();
}

} // namespace forms
