#include "app/instruments/SoundModels.h"

#include "app/controls/QtText.h"

namespace Sonarello {

namespace {

const TBrowserBank& BankAt(const TSoundBrowser& browser, int bank) {
  return browser.Banks().Banks()[static_cast<std::size_t>(bank)];
}

QString Number(int value) { return value < 0 ? QStringLiteral("–") : QString::number(value); }

}  // namespace

void CategoryModel::Show(const TSoundBrowser& browser, int index) {
  beginResetModel();
  bank = &BankAt(browser, index);
  endResetModel();
}

void CategoryModel::Clear() {
  beginResetModel();
  bank = nullptr;
  endResetModel();
}

int CategoryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || bank == nullptr ? 0 : static_cast<int>(bank->Categories.size());
}

QVariant CategoryModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || bank == nullptr) return {};
  const TBrowserCategory& category = bank->Categories[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole: return ToQt(category.Name);
    case BadgeRole: return QString::number(category.Sounds.size());
    case Qt::AccessibleTextRole:
      return ToQt(category.Name) + QStringLiteral(", ") + QString::number(category.Sounds.size());
    default: return {};
  }
}

QVariant CategoryModel::headerData(int, Qt::Orientation, int role) const {
  return role == Qt::DisplayRole ? QVariant(QText("Kategorien", "Categories")) : QVariant();
}

void SoundTableModel::Show(const TSoundBrowser& of, int b, int c) {
  beginResetModel();
  browser = &of;
  bank = b;
  category = c;
  endResetModel();
}

void SoundTableModel::Clear() {
  beginResetModel();
  browser = nullptr;
  bank = category = -1;
  endResetModel();
}

int SoundTableModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid() || browser == nullptr || bank < 0 || category < 0) return 0;
  const auto& categories = BankAt(*browser, bank).Categories;
  if (static_cast<std::size_t>(category) >= categories.size()) return 0;
  return static_cast<int>(categories[static_cast<std::size_t>(category)].Sounds.size());
}

int SoundTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : Columns;
}

QString SoundTableModel::Text(const TPatch& row, int column) const {
  switch (column) {
    case Name: return ToQt(browser->Banks().ListText(bank, row).Name);
    case Effect: return ToQt(browser->EffectText(bank, row));
    case BankMSB: return Number(row.CC00);
    case BankLSB: return Number(row.CC32);
    default: return row.Patch < 0 ? Number(-1) : Number(row.Patch + 1);
  }
}

QVariant SoundTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || browser == nullptr) return {};
  const TPatch* row = browser->Banks().RowAt(PlaceOf(index.row()));
  if (row == nullptr) return {};
  switch (role) {
    case Qt::DisplayRole: return Text(*row, index.column());
    case Qt::EditRole: return Text(*row, index.column());
    case Qt::TextAlignmentRole:
      return int((index.column() >= BankMSB ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    case Qt::AccessibleTextRole:
      return index.column() == Name ? ToQt(row->Name) : Text(*row, index.column());
    case BadgeRole:
      return index.column() == Name ? ToQt(browser->Banks().ListText(bank, *row).Badge) : QString();
    default: return {};
  }
}

QVariant SoundTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole)
    return int((section >= BankMSB ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  if (role != Qt::DisplayRole) return {};
  switch (section) {
    case Name: {
      const bool drums = browser != nullptr && browser->IsOpen() && browser->ShowsDrums();
      return drums ? QStringLiteral("Drumsets") : QStringLiteral("Sounds");
    }
    case Effect: return QStringLiteral("DSP");
    case BankMSB: return QStringLiteral("MSB");
    case BankLSB: return QStringLiteral("LSB");
    default: return QStringLiteral("Prog");
  }
}

Qt::ItemFlags SoundTableModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags usual = QAbstractTableModel::flags(index);
  const bool own = index.isValid() && index.column() == Name && browser != nullptr &&
                   browser->CanRename(PlaceOf(index.row()));
  return own ? usual | Qt::ItemIsEditable : usual;
}

bool SoundTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || (flags(index) & Qt::ItemIsEditable) == 0) return false;
  const QString name = value.toString();
  if (name == data(index, Qt::EditRole).toString()) return false;
  Q_EMIT renamed(index.row(), name);
  return true;
}

void HitModel::Show(const TSoundBrowser& of, const QString& text) {
  beginResetModel();
  browser = &of;
  wanted = text;
  hits = of.Search(ToStd(text));
  endResetModel();
}

int HitModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(hits.size());
}

QVariant HitModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || browser == nullptr || !browser->IsOpen()) return {};
  const TSoundPlace& place = PlaceOf(index.row());
  const TPatch* row = browser->Banks().RowAt(place);
  if (row == nullptr) return {};
  const TBrowserBank& bank = BankAt(*browser, place.Bank);
  const QString category = ToQt(bank.Categories[static_cast<std::size_t>(place.Category)].Name);
  const QString where =
      ToQt(bank.Name) + (category.isEmpty() ? QString() : QStringLiteral(" · ") + category);
  switch (role) {
    case Qt::DisplayRole: return ToQt(row->Name);
    case WhereRole: return where;
    case StartRole: return ToQt(row->Name).indexOf(wanted, 0, Qt::CaseInsensitive);
    case Qt::AccessibleTextRole: return ToQt(row->Name) + QStringLiteral(", ") + where;
    default: return {};
  }
}

}  // namespace Sonarello
