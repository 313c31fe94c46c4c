#pragma once

#include <QButtonGroup>
#include <QStringList>
#include <QWidget>

class QRadioButton;

// A grid of radio cells, one of which is selected; a click on a cell emits
// cellClicked() once. Cells are filled row by row from cellTitles.
class RadioMatrix : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int rows READ rows WRITE setRows)
    Q_PROPERTY(int columns READ columns WRITE setColumns)
    Q_PROPERTY(QStringList cellTitles READ cellTitles WRITE setCellTitles)
    Q_PROPERTY(int selectedIndex READ selectedIndex WRITE setSelectedIndex)
  public:
    explicit RadioMatrix(QWidget* parent = nullptr);

    int rows() const { return rows_; }
    void setRows(int rows);
    int columns() const { return columns_; }
    void setColumns(int columns);
    QStringList cellTitles() const { return titles_; }
    void setCellTitles(const QStringList& titles);

    int selectedIndex() const { return selected_; }
    void setSelectedIndex(int index);
    int selectedRow() const { return columns_ > 0 ? selected_ / columns_ : 0; }
    int selectedColumn() const { return columns_ > 0 ? selected_ % columns_ : 0; }
    void selectCell(int row, int column) { setSelectedIndex(row * columns_ + column); }

    QRadioButton* cell(int index) const;

  signals:
    void cellClicked();

  private:
    void rebuild();

    int rows_ = 1;
    int columns_ = 1;
    int selected_ = 0;
    QStringList titles_;
    QButtonGroup group_;
};
