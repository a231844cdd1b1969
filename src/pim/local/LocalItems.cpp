// SPDX-License-Identifier: GPL-3.0-or-later
// The item collection of a local folder.
#include "pim/local/LocalItems.h"

#include "pim/Filter.h"
#include "pim/local/LocalItemTypes.h"

#include <algorithm>

namespace tsr::pim::local {

namespace {

class LocalItems : public Items {
public:
    LocalItems(std::shared_ptr<LocalStore> store, QString rel)
        : m_store(std::move(store)), m_rel(std::move(rel)), m_calendar(m_store->isCalendarFolder(m_rel)) {}

    bool IncludeRecurrences() const override { return m_includeRecurrences; }
    void setIncludeRecurrences(bool include) override { m_includeRecurrences = include; }

    void Sort(const QString& property, bool descending) override {
        const QString name = sortProperty(property);
        if (!isKnownProperty(name, m_calendar ? olAppointment : olContact))
            core::raise(err::InvalidArgument, QStringLiteral("Items:Sort"),
                        QStringLiteral("The property \"%1\" cannot be sorted on.").arg(property));
        m_sort = name;
        m_descending = descending;
        m_list.clear();
    }

    std::shared_ptr<Item> Find(const QString& filterText) override {
        const Filter filter = parseFilter(filterText, m_store->ctx().formats);
        const int itemClass = m_calendar ? olAppointment : olContact;
        for (const FilterTerm& t : filter.terms)
            if (!isKnownProperty(t.property, itemClass))
                core::raise(err::InvalidArgument, QStringLiteral("Items:Find"),
                            QStringLiteral("The property [%1] is unknown for these items.").arg(t.property));
        m_found.clear();
        m_next = 0;
        const LocalStore::DirCache& cache = m_store->refresh(m_rel);
        for (auto it = cache.cbegin(); it != cache.cend(); ++it) {
            const LocalStore::Entry& e = it.value();
            if (e.failed)
                continue;
            const ItemPlace place{m_store, m_rel, it.key()};
            if (e.event && e.event->recurrence && m_includeRecurrences) {
                // Every occurrence in the filter's range is an item of its own with the series' EntryID.
                const core::VbDate from = filter.startFrom.value_or(core::DateValue(e.event->start));
                const core::VbDate to = filter.startTo.value_or(core::VbDate(1e7));
                for (const Occurrence& o : occurrences(*e.event, from, to, kMaxOccurrences)) {
                    auto item = std::make_shared<LocalAppointment>(place, e.event, o);
                    if (matches(filter, *item))
                        m_found << item;
                }
                continue;
            }
            // A single entry outside the range needs no item object to be turned down.
            if (e.event && outside(e.event->start, filter))
                continue;
            auto item = makeItem(m_store, m_rel, it.key(), e);
            if (item && matches(filter, *item))
                m_found << item;
        }
        sortList(m_found);
        return FindNext();
    }

    std::shared_ptr<Item> FindNext() override {
        if (m_next >= m_found.size())
            return nullptr;
        return m_found[m_next++];
    }

    int Count() override {
        m_list.clear();
        return int(list().size());
    }

    std::shared_ptr<Item> ItemAt(int index) override {
        const QList<std::shared_ptr<Item>>& items = list();
        if (index < 1 || index > items.size())
            core::raise(err::IndexOutOfBounds, QStringLiteral("Items:Item"),
                        QStringLiteral("Array index out of bounds: %1 of %2.").arg(index).arg(items.size()));
        return items[index - 1];
    }

    std::shared_ptr<Item> Add() override {
        m_list.clear();
        const ItemPlace place{m_store, m_rel, QString()};
        if (m_calendar) {
            auto data = std::make_shared<EventData>();
            const core::VbDate now = m_store->ctx().clock.Now();
            // A new appointment starts at the next full half hour and lasts half an hour.
            data->start = core::VbDate(std::ceil(now.value * 48.0 - 1e-9) / 48.0);
            data->end = core::VbDate(data->start.value + 1.0 / 48.0);
            data->timesChanged = true;
            return std::make_shared<LocalAppointment>(place, data);
        }
        return std::make_shared<LocalContact>(place, std::make_shared<ContactData>());
    }

private:
    static bool outside(core::VbDate start, const Filter& filter) {
        constexpr double second = 1.0 / 86400.0;
        return (filter.startFrom && start.value < filter.startFrom->value - second) ||
               (filter.startTo && start.value > filter.startTo->value + second);
    }

    const QList<std::shared_ptr<Item>>& list() {
        if (m_list.isEmpty()) {
            const LocalStore::DirCache& cache = m_store->refresh(m_rel);
            for (auto it = cache.cbegin(); it != cache.cend(); ++it)
                if (auto item = makeItem(m_store, m_rel, it.key(), it.value()))
                    m_list << item;
            sortList(m_list);
        }
        return m_list;
    }

    void sortList(QList<std::shared_ptr<Item>>& items) const {
        if (m_sort.isEmpty())
            return;
        // Each item's key is read once: reading it can mean parsing a structured value.
        std::vector<std::pair<PropertyValue, std::shared_ptr<Item>>> keyed;
        keyed.reserve(items.size());
        for (auto& item : items)
            keyed.emplace_back(propertyValue(*item, m_sort), std::move(item));
        std::stable_sort(keyed.begin(), keyed.end(), [this](const auto& a, const auto& b) {
            const int c = compareValues(a.first, b.first);
            return m_descending ? c > 0 : c < 0;
        });
        items.clear();
        for (auto& [key, item] : keyed)
            items << std::move(item);
    }

    std::shared_ptr<LocalStore> m_store;
    QString m_rel;
    bool m_calendar;
    bool m_includeRecurrences = false;
    QString m_sort;
    bool m_descending = false;
    QList<std::shared_ptr<Item>> m_list;
    QList<std::shared_ptr<Item>> m_found;
    qsizetype m_next = 0;
};

} // namespace

std::shared_ptr<Item> makeItem(const std::shared_ptr<LocalStore>& store, const QString& rel, const QString& fileName,
                               const LocalStore::Entry& entry) {
    ItemPlace place{store, rel, fileName};
    if (entry.event)
        return std::make_shared<LocalAppointment>(std::move(place), entry.event);
    if (entry.contact && entry.contact->isGroup())
        return std::make_shared<LocalDistList>(std::move(place), entry.contact);
    if (entry.contact)
        return std::make_shared<LocalContact>(std::move(place), entry.contact);
    return nullptr;
}

std::shared_ptr<Items> makeItems(const std::shared_ptr<LocalStore>& store, const QString& rel) {
    return std::make_shared<LocalItems>(store, rel);
}

} // namespace tsr::pim::local
