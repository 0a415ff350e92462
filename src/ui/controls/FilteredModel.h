#pragma once

#include <QSortFilterProxyModel>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// The rows of a model in which a text is found, in the model's order; without a text all of them.
class FilteredModel : public QSortFilterProxyModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QObject *source READ sourceModel WRITE setSource NOTIFY sourceChanged FINAL)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)
    Q_PROPERTY(
        QStringList searchedRoles READ searchedRoles WRITE setSearchedRoles NOTIFY searchedRolesChanged FINAL)
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

public:
    explicit FilteredModel(QObject *parent = nullptr);

    /// A model, borrowed; null has no rows.
    void setSource(QObject *model);
    /// Each of its words is looked for, whatever their case.
    [[nodiscard]] QString text() const { return m_text; }
    void setText(const QString &text);
    /// The names of the roles in which it is looked for.
    [[nodiscard]] QStringList searchedRoles() const { return m_roles; }
    void setSearchedRoles(const QStringList &roles);

    [[nodiscard]] int count() const { return rowCount(); }

    /// The row here of the model's row; -1 where it is left out.
    [[nodiscard]] Q_INVOKABLE int rowFrom(int sourceRow) const;

Q_SIGNALS:
    void sourceChanged();
    void textChanged();
    void searchedRolesChanged();
    void countChanged();

protected:
    [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    QString m_text;
    QStringList m_words;
    QStringList m_roles;
};

} // namespace randblatt
