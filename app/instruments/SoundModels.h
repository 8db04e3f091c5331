// The sounds of an instrument as lists and tables.
#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <vector>

#include "desk/SoundBrowser.h"

namespace Sonarello {

/// Roles of the models beside those of Qt.
enum SoundRole {
  BadgeRole = Qt::UserRole,  ///< bracketed end of a name, or how many sounds a category has
  WhereRole,                 ///< bank and category of a hit
  StartRole,                 ///< where the text of the search begins in a hit
};

/// The categories of a bank and how many sounds each has.
class CategoryModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  void Show(const TSoundBrowser& browser, int bank);
  void Clear();

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const TBrowserBank* bank = nullptr;
};

/// The sounds of a category: name, effect, bank selects and program, which counts from 1 as in the
/// instruments' own lists. Rows are built on demand.
class SoundTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Name, Effect, BankMSB, BankLSB, Program, Columns };

  using QAbstractTableModel::QAbstractTableModel;

  void Show(const TSoundBrowser& browser, int bank, int category);
  void Clear();
  /// Where a row stands in the browser.
  [[nodiscard]] TSoundPlace PlaceOf(int row) const { return {bank, category, row}; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 Q_SIGNALS:
  /// The user typed another name for a sound.
  void renamed(int row, const QString& name);

 private:
  [[nodiscard]] QString Text(const TPatch& row, int column) const;

  const TSoundBrowser* browser = nullptr;
  int bank = -1;
  int category = -1;
};

/// What a search found.
class HitModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  void Show(const TSoundBrowser& browser, const QString& text);
  [[nodiscard]] const TSoundPlace& PlaceOf(int row) const {
    return hits[static_cast<std::size_t>(row)];
  }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  const TSoundBrowser* browser = nullptr;
  QString wanted;
  std::vector<TSoundPlace> hits;
};

}  // namespace Sonarello
