#include "ui/controls/FilteredModel.h"

#include <algorithm>

namespace randblatt {

FilteredModel::FilteredModel(QObject *parent)
    : QSortFilterProxyModel(parent)
{
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(this, signal, this, &FilteredModel::countChanged);
    connect(this, &QAbstractItemModel::modelReset, this, &FilteredModel::countChanged);
}

void FilteredModel::setSource(QObject *model)
{
    auto *source = qobject_cast<QAbstractItemModel *>(model);
    if (source == sourceModel())
        return;
    setSourceModel(source);
    Q_EMIT sourceChanged();
}

void FilteredModel::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    m_words = text.toCaseFolded().simplified().split(u' ', Qt::SkipEmptyParts);
    invalidateFilter();
    Q_EMIT textChanged();
}

void FilteredModel::setSearchedRoles(const QStringList &roles)
{
    if (roles == m_roles)
        return;
    m_roles = roles;
    invalidateFilter();
    Q_EMIT searchedRolesChanged();
}

int FilteredModel::rowFrom(int sourceRow) const
{
    const QAbstractItemModel *source = sourceModel();
    return source == nullptr ? -1 : mapFromSource(source->index(sourceRow, 0)).row();
}

bool FilteredModel::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    if (m_words.isEmpty())
        return true;
    const QModelIndex index = sourceModel()->index(row, 0, parent);
    const auto names = sourceModel()->roleNames();
    QString searched;
    for (auto role = names.cbegin(); role != names.cend(); ++role) {
        if (m_roles.contains(QString::fromUtf8(role.value())))
            searched += index.data(role.key()).toString().toCaseFolded() + u'\n';
    }
    return std::all_of(m_words.cbegin(), m_words.cend(),
                       [&searched](const QString &word) { return searched.contains(word); });
}

} // namespace randblatt
