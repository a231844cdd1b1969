// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/Recordset.h"

#include "core/Error.h"

#include <QRegularExpression>
#include <algorithm>

namespace tsr::tables {

using core::TsrError;
using core::VbDate;
namespace err = core::err;

struct Recordset::Row {
    std::vector<Value> values;
    int viewPos = -1; // index in m_view, -1 while filtered out
};

struct Recordset::Criterion {
    enum class Op { Eq, Ne, Lt, Gt, Le, Ge, Like };
    int field = -1;
    Op op = Op::Eq;
    QString text;   // the value as text, for comparisons with the field's text form
    QString folded; // case-folded text
    Value value;    // the value as typed (number, date or text)
    QRegularExpression like;
};

// Rows of the view by the case-folded text form of one field, each list in view order.
struct Recordset::Index {
    QHash<QString, std::vector<Row*>> rows;
};

// Index lists are kept in view order, so a row is found by its position.
template <class Row> static void removeFromList(std::vector<Row*>& list, Row* row) {
    auto at = std::lower_bound(list.begin(), list.end(), row->viewPos,
                               [](const Row* r, int pos) { return r->viewPos < pos; });
    if (at != list.end() && *at == row)
        list.erase(at);
    else
        list.erase(std::remove(list.begin(), list.end(), row), list.end());
}

static const QString kSource = QStringLiteral("ADODB.Recordset");

static TsrError noCurrentRecord() {
    return TsrError(err::AdoNoCurrentRecord, kSource,
                    QStringLiteral("Either BOF or EOF is True, or the current record has been deleted. "
                                   "Requested operation requires a current record."));
}

Recordset::Recordset(QString name) : m_name(std::move(name)) {}
Recordset::~Recordset() = default;

void Recordset::appendField(const QString& name, FieldType type) {
    if (m_open)
        throw TsrError(err::AdoBadArguments, kSource,
                       QStringLiteral("Operation is not allowed when the object is open."));
    const QString folded = name.toCaseFolded();
    if (m_fieldByName.contains(folded))
        throw TsrError(err::AdoBadArguments, kSource, QStringLiteral("Field already exists: ") + name);
    m_fieldByName.insert(folded, int(m_fields.size()));
    m_fields.push_back({name, folded, type});
}

void Recordset::open() {
    m_open = true;
    m_cursor = 0;
}

void Recordset::close() {
    m_open = false;
    m_rows.clear();
    m_view.clear();
    dropIndexes();
    m_cursor = 0;
    m_onDeleted = false;
}

int Recordset::fieldIndex(const QString& name) const {
    // A literal's text lives as long as the program, so its address names it: a
    // read asks for fields by literal names a hundred times a row, and the address
    // is cheaper to look up than the text's hash. The copy guards against text
    // that only borrowed its address.
    const bool literal = !name.isEmpty() && !name.data_ptr().isMutable();
    LiteralSlot* slot = nullptr;
    if (literal) {
        slot = &m_literalSlots[(quintptr(name.constData()) / sizeof(QChar)) % m_literalSlots.size()];
        if (slot->text == name.constData() && slot->copy == name)
            return slot->index;
    }
    // Code names its fields in a few spellings; each is remembered as it was
    // written, so case folding is paid once per spelling, not on every call.
    int index = -1;
    if (const auto known = m_fieldBySpelling.constFind(name); known != m_fieldBySpelling.constEnd()) {
        index = known.value();
    } else {
        index = m_fieldByName.value(name.toCaseFolded(), -1);
        // The key keeps text of its own: a borrowed text may change under it.
        if (index >= 0)
            m_fieldBySpelling.insert(literal ? QString(name.constData(), name.size()) : name, index);
    }
    if (slot && index >= 0)
        *slot = {name.constData(), QString(name.constData(), name.size()), index};
    return index;
}

int Recordset::requireField(const QString& name) const {
    const int i = fieldIndex(name);
    if (i < 0)
        throw TsrError(err::AdoItemNotFound, kSource,
                       QStringLiteral("Item cannot be found in the collection corresponding to the requested name "
                                      "or ordinal: ") +
                           name);
    return i;
}

Recordset::Row& Recordset::currentRow() {
    if (m_onDeleted || m_cursor < 0 || m_cursor >= int(m_view.size()))
        throw noCurrentRecord();
    return *m_view[size_t(m_cursor)];
}

const Recordset::Row& Recordset::currentRow() const {
    return const_cast<Recordset*>(this)->currentRow();
}

void Recordset::addNew() {
    auto row = std::make_unique<Row>();
    row->values.resize(m_fields.size());
    row->viewPos = int(m_view.size());
    Row* raw = row.get();
    m_rows.push_back(std::move(row));
    m_view.push_back(raw);
    // Every empty value of the new row joins the indexes under the empty key.
    for (auto it = m_indexes.begin(); it != m_indexes.end(); ++it)
        it.value()->rows[QString()].push_back(raw);
    m_cursor = raw->viewPos;
    m_onDeleted = false;
}

void Recordset::addNew(std::vector<Value> values) {
    if (values.size() != m_fields.size())
        throw TsrError(err::AdoBadArguments, kSource,
                       QStringLiteral("Arguments are of the wrong type, are out of acceptable range, or are in "
                                      "conflict with one another."));
    for (size_t i = 0; i < values.size(); ++i)
        convertForField(int(i), values[i]);
    auto row = std::make_unique<Row>();
    row->values = std::move(values);
    row->viewPos = int(m_view.size());
    Row* raw = row.get();
    m_rows.push_back(std::move(row));
    m_view.push_back(raw);
    for (auto it = m_indexes.begin(); it != m_indexes.end(); ++it)
        it.value()->rows[textForm(raw->values[size_t(it.key())]).toCaseFolded()].push_back(raw);
    m_cursor = raw->viewPos;
    m_onDeleted = false;
}

void Recordset::convertForField(int index, Value& v) const {
    const FieldType type = m_fields[size_t(index)].type;
    if (v.isEmpty() || v.type() == type) {
        // Already of the field's type: kept as it is.
    } else if (type == FieldType::Text && v.type() == FieldType::Date) {
        v = dateAsText(v.toDate());
    } else if (type == FieldType::Date && v.type() == FieldType::Text) {
        auto d = core::parseDate(v.toText(), m_dateMask, m_timeMask);
        if (!d)
            throw TsrError(err::TypeMismatch, kSource, core::standardDescription(err::TypeMismatch));
        v = *d;
    } else {
        v = v.convertedTo(type);
    }
}

void Recordset::deleteCurrent() {
    Row& row = currentRow();
    for (auto it = m_indexes.begin(); it != m_indexes.end(); ++it)
        removeFromList(it.value()->rows[textForm(row.values[size_t(it.key())]).toCaseFolded()], &row);
    const int pos = row.viewPos;
    m_view.erase(m_view.begin() + pos);
    for (size_t i = size_t(pos); i < m_view.size(); ++i)
        m_view[i]->viewPos = int(i);
    auto owner = std::find_if(m_rows.begin(), m_rows.end(), [&](const auto& r) { return r.get() == &row; });
    m_rows.erase(owner);
    m_cursor = pos;
    m_onDeleted = true;
}

void Recordset::moveFirst() {
    m_cursor = 0;
    m_onDeleted = false;
}

void Recordset::moveLast() {
    m_cursor = int(m_view.size()) - 1;
    m_onDeleted = false;
}

void Recordset::moveNext() {
    if (m_onDeleted) {
        m_onDeleted = false; // the row behind the gap already stands at the cursor
        return;
    }
    if (m_cursor >= int(m_view.size()))
        throw noCurrentRecord();
    ++m_cursor;
}

void Recordset::movePrevious() {
    m_onDeleted = false;
    if (m_cursor < 0)
        throw noCurrentRecord();
    --m_cursor;
}

bool Recordset::eof() const {
    return !m_onDeleted && m_cursor >= int(m_view.size());
}

bool Recordset::bof() const {
    return m_cursor < 0 || m_view.empty();
}

int Recordset::recordCount() const {
    return int(m_view.size());
}

int Recordset::absolutePosition() const {
    if (m_view.empty())
        return PosUnknown;
    if (m_cursor < 0)
        return PosBOF;
    if (m_cursor >= int(m_view.size()))
        return PosEOF;
    return m_cursor + 1;
}

void Recordset::setAbsolutePosition(int position) {
    m_onDeleted = false;
    if (position == PosEOF) {
        m_cursor = int(m_view.size());
    } else if (position == PosBOF) {
        m_cursor = -1;
    } else if (position >= 1 && position <= int(m_view.size())) {
        m_cursor = position - 1;
    } else if (position == PosUnknown && m_view.empty()) {
        m_cursor = 0;
    } else {
        throw TsrError(err::AdoBadArguments, kSource,
                       QStringLiteral("Arguments are of the wrong type, are out of acceptable range, or are in "
                                      "conflict with one another."));
    }
}

Value Recordset::value(const QString& field) const {
    return currentRow().values[size_t(requireField(field))];
}

Value Recordset::value(int index) const {
    if (index < 0 || index >= fieldCount())
        throw TsrError(err::AdoItemNotFound, kSource, QStringLiteral("Item cannot be found in the collection."));
    return currentRow().values[size_t(index)];
}

void Recordset::setValue(const QString& field, const Value& v) {
    setValue(requireField(field), v);
}

void Recordset::setValue(int index, Value v) {
    if (index < 0 || index >= fieldCount())
        throw TsrError(err::AdoItemNotFound, kSource, QStringLiteral("Item cannot be found in the collection."));
    Row& row = currentRow();
    convertForField(index, v);

    if (!m_indexes.isEmpty() && row.viewPos >= 0) {
        auto idx = m_indexes.constFind(index);
        if (idx != m_indexes.constEnd()) {
            auto& index_ = *idx.value();
            removeFromList(index_.rows[textForm(row.values[size_t(index)]).toCaseFolded()], &row);
            auto& newList = index_.rows[textForm(v).toCaseFolded()];
            auto at = std::lower_bound(newList.begin(), newList.end(), row.viewPos,
                                       [](const Row* r, int pos) { return r->viewPos < pos; });
            newList.insert(at, &row);
        }
    }
    row.values[size_t(index)] = std::move(v);
}

std::span<Value> Recordset::currentValues() {
    return currentRow().values;
}

std::vector<Value> Recordset::getRows() {
    std::vector<Value> out = currentRow().values;
    ++m_cursor;
    return out;
}

Value Recordset::valueAt(int viewIndex, int fieldIndex) const {
    return m_view.at(size_t(viewIndex))->values.at(size_t(fieldIndex));
}

Recordset::Bookmark Recordset::bookmarkAt(int viewIndex) const {
    return m_view.at(size_t(viewIndex));
}

int Recordset::viewIndexOf(Bookmark bookmark) const {
    for (const auto& r : m_rows)
        if (r.get() == bookmark)
            return r->viewPos;
    return -1;
}

void Recordset::setDateTextForm(const QString& dateMask, const QString& timeMask) {
    m_dateMask = dateMask;
    m_timeMask = timeMask;
    dropIndexes();
}

QString Recordset::dateAsText(VbDate d) const {
    return core::dateText(d, m_dateMask, m_timeMask);
}

QString Recordset::textForm(const Value& v) const {
    if (v.type() == FieldType::Date)
        return dateAsText(v.toDate());
    return v.toText();
}

// --- criteria -------------------------------------------------------------

// The common "Field = 'value'" read by hand: a pass pairs each entry through a
// Find of this form, and the regular expression would cost more than the Find.
static bool splitSimpleEquals(const QString& text, QString& field, QString& raw) {
    // Only blanks and tabs around the parts; anything rarer goes the general way.
    auto blank = [](QChar c) { return c == u' ' || c == u'\t'; };
    auto trim = [&](QStringView v) {
        while (!v.isEmpty() && blank(v.front()))
            v = v.mid(1);
        while (!v.isEmpty() && blank(v.back()))
            v.chop(1);
        return v;
    };
    for (QChar c : text)
        if (c == u'\n' || c == u'\r' || c == u'\v' || c == u'\f')
            return false;
    const QStringView t = trim(text);
    qsizetype i = 0;
    auto word = [](QChar c, bool first) {
        return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || c == u'_' || (!first && c >= u'0' && c <= u'9');
    };
    while (i < t.size() && word(t[i], i == 0))
        ++i;
    if (i == 0)
        return false;
    qsizetype eq = i;
    while (eq < t.size() && blank(t[eq]))
        ++eq;
    if (eq >= t.size() || t[eq] != u'=')
        return false;
    const QStringView value = trim(t.mid(eq + 1));
    if (value.size() < 2 || value.front() != u'\'' || value.back() != u'\'')
        return false;
    field = t.left(i).toString();
    raw = value.toString();
    return true;
}

Recordset::Criterion Recordset::parseCriterion(const QString& text) const {
    using Op = Criterion::Op;
    Criterion c;
    QString fieldName, raw;
    if (splitSimpleEquals(text, fieldName, raw)) {
        c.field = requireField(fieldName);
        c.op = Op::Eq;
    } else {
        static const QRegularExpression re(
            QStringLiteral(R"(^\s*\[?([A-Za-z_][A-Za-z0-9_]*)\]?\s*(<>|<=|>=|=|<|>|\bLIKE\b)\s*(.*?)\s*$)"),
            QRegularExpression::CaseInsensitiveOption);
        const auto m = re.match(text);
        if (!m.hasMatch())
            throw TsrError(err::AdoBadArguments, kSource, QStringLiteral("Cannot read the criteria: ") + text);
        c.field = requireField(m.captured(1));
        const QString op = m.captured(2).toUpper();
        c.op = op == u"="    ? Op::Eq
               : op == u"<>" ? Op::Ne
               : op == u"<"  ? Op::Lt
               : op == u">"  ? Op::Gt
               : op == u"<=" ? Op::Le
               : op == u">=" ? Op::Ge
                             : Op::Like;
        raw = m.captured(3);
    }
    const FieldType type = m_fields[size_t(c.field)].type;
    if (raw.size() >= 2 && raw.startsWith(u'#') && raw.endsWith(u'#')) {
        auto d = core::parseDate(raw.mid(1, raw.size() - 2), m_dateMask, m_timeMask);
        if (!d)
            throw TsrError(err::AdoBadArguments, kSource, QStringLiteral("Cannot read the date in: ") + text);
        c.value = *d;
        c.text = dateAsText(*d);
    } else if (raw.size() >= 2 &&
               ((raw.startsWith(u'\'') && raw.endsWith(u'\'')) || (raw.startsWith(u'"') && raw.endsWith(u'"')))) {
        c.text = raw.mid(1, raw.size() - 2);
        c.value = c.text;
    } else {
        c.text = raw;
        c.value = raw;
    }
    if (type == FieldType::Date && c.value.type() == FieldType::Text) {
        if (auto d = core::parseDate(c.text, m_dateMask, m_timeMask))
            c.value = *d;
    }
    c.folded = c.text.toCaseFolded();
    if (c.op == Op::Like) {
        QString pattern = QRegularExpression::escape(c.text);
        pattern.replace(QStringLiteral("\\*"), QStringLiteral(".*")).replace(QStringLiteral("%"), QStringLiteral(".*"));
        c.like = QRegularExpression(QStringLiteral("^") + pattern + QStringLiteral("$"),
                                    QRegularExpression::CaseInsensitiveOption);
    }
    return c;
}

static int compareValues(const Value& a, const QString& aText, const Value& b, const QString& bText) {
    const bool aNum = a.type() == FieldType::Int32 || a.type() == FieldType::Int64 || a.type() == FieldType::Double;
    if (aNum || a.type() == FieldType::Bool) {
        bool ok = false;
        const double bv = bText.trimmed().toDouble(&ok);
        if (ok) {
            const double av = a.toDouble();
            return av < bv ? -1 : av > bv ? 1 : 0;
        }
    }
    if (a.type() == FieldType::Date && b.type() == FieldType::Date) {
        const double av = a.toDate().value, bv = b.toDate().value;
        return av < bv ? -1 : av > bv ? 1 : 0;
    }
    return QString::compare(aText, bText, Qt::CaseInsensitive);
}

bool Recordset::matches(const Row& row, const Criterion& c) const {
    const Value& v = row.values[size_t(c.field)];
    const QString text = textForm(v);
    using Op = Criterion::Op;
    switch (c.op) {
    case Op::Eq:
        return text.toCaseFolded() == c.folded;
    case Op::Ne:
        return text.toCaseFolded() != c.folded;
    case Op::Like:
        return c.like.match(text).hasMatch();
    default:
        break;
    }
    const int cmp = compareValues(v, text, c.value, c.text);
    switch (c.op) {
    case Op::Lt:
        return cmp < 0;
    case Op::Gt:
        return cmp > 0;
    case Op::Le:
        return cmp <= 0;
    case Op::Ge:
        return cmp >= 0;
    default:
        return false;
    }
}

Recordset::Index& Recordset::indexFor(int field) {
    auto it = m_indexes.find(field);
    if (it != m_indexes.end())
        return *it.value();
    auto index = std::make_shared<Index>();
    for (Row* r : m_view)
        index->rows[textForm(r->values[size_t(field)]).toCaseFolded()].push_back(r);
    m_indexes.insert(field, index);
    return *index;
}

void Recordset::dropIndexes() {
    m_indexes.clear();
}

// The first row at view index `from` or later whose field equals the criterion.
int Recordset::findIndexed(const Criterion& c, int from) {
    Index& index = indexFor(c.field);
    auto it = index.rows.constFind(c.folded);
    if (it == index.rows.constEnd())
        return -1;
    const auto& list = it.value();
    auto at = std::lower_bound(list.begin(), list.end(), from, [](const Row* r, int pos) { return r->viewPos < pos; });
    return at == list.end() ? -1 : (*at)->viewPos;
}

bool Recordset::find(const QString& criteria, int skip, int direction) {
    const Criterion c = parseCriterion(criteria);
    const int n = int(m_view.size());
    int start = m_cursor + skip;
    if (m_onDeleted && direction < 0)
        --start;
    m_onDeleted = false;
    if (direction >= 0) {
        start = std::max(start, 0);
        const int hit = c.op == Criterion::Op::Eq ? findIndexed(c, start) : [&] {
            for (int i = start; i < n; ++i)
                if (matches(*m_view[size_t(i)], c))
                    return i;
            return -1;
        }();
        m_cursor = hit >= 0 ? hit : n;
        return hit >= 0;
    }
    for (int i = std::min(start, n - 1); i >= 0; --i) {
        if (matches(*m_view[size_t(i)], c)) {
            m_cursor = i;
            return true;
        }
    }
    m_cursor = -1;
    return false;
}

// --- sort and filter --------------------------------------------------------

void Recordset::setSort(const QString& sort) {
    m_sort = sort.trimmed();
    rebuildView();
}

void Recordset::setFilter(const QString& criteria) {
    m_filter = criteria.trimmed();
    m_filterCriteria.clear();
    if (!m_filter.isEmpty()) {
        static const QRegularExpression andRe(QStringLiteral(R"(\s+AND\s+)"),
                                              QRegularExpression::CaseInsensitiveOption);
        for (const QString& part : m_filter.split(andRe))
            m_filterCriteria.push_back(parseCriterion(part));
    }
    rebuildView();
}

void Recordset::rebuildView() {
    struct Key {
        int field;
        bool desc;
    };
    std::vector<Key> keys;
    for (const QString& part : m_sort.split(u',', Qt::SkipEmptyParts)) {
        const QStringList words = part.simplified().split(u' ');
        const QString name = words.value(0).remove(u'[').remove(u']');
        keys.push_back({requireField(name), words.size() > 1 && words[1].compare(u"DESC", Qt::CaseInsensitive) == 0});
    }
    m_view.clear();
    for (auto& r : m_rows) {
        r->viewPos = -1;
        bool keep = true;
        for (const Criterion& c : m_filterCriteria)
            keep = keep && matches(*r, c);
        if (keep)
            m_view.push_back(r.get());
    }
    if (!keys.empty()) {
        // Each row's text forms are made once, not at every comparison: a date's
        // text costs a formatting, and a sort compares n log n times.
        struct Keyed {
            Row* row;
            std::vector<QString> texts;
        };
        std::vector<Keyed> keyed;
        keyed.reserve(m_view.size());
        for (Row* r : m_view) {
            Keyed k{r, {}};
            k.texts.reserve(keys.size());
            for (const Key& key : keys)
                k.texts.push_back(textForm(r->values[size_t(key.field)]));
            keyed.push_back(std::move(k));
        }
        std::stable_sort(keyed.begin(), keyed.end(), [&](const Keyed& a, const Keyed& b) {
            for (size_t i = 0; i < keys.size(); ++i) {
                const Key& k = keys[i];
                const Value& va = a.row->values[size_t(k.field)];
                const Value& vb = b.row->values[size_t(k.field)];
                if (va.isEmpty() != vb.isEmpty())
                    return k.desc ? vb.isEmpty() : va.isEmpty();
                const int cmp = compareValues(va, a.texts[i], vb, b.texts[i]);
                if (cmp != 0)
                    return k.desc ? cmp > 0 : cmp < 0;
            }
            return false;
        });
        for (size_t i = 0; i < keyed.size(); ++i)
            m_view[i] = keyed[i].row;
    }
    for (size_t i = 0; i < m_view.size(); ++i)
        m_view[i]->viewPos = int(i);
    dropIndexes();
    m_cursor = 0;
    m_onDeleted = false;
}

} // namespace tsr::tables
