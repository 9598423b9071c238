#include "devices/escpos/EscPosCodePage.h"

#include "devices/escpos/codepages/CodePageTables.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <vector>

namespace {

bool isControl(char32_t character)
{
    return character < 0x20 || (character >= 0x7f && character < 0xa0);
}

} // namespace

EscPosCodePage::EscPosCodePage(const CodePageTable &table)
    : m_name(QString::fromLatin1(table.name)), m_epsonNumber(table.epsonNumber)
{
    for (int i = 0; i < 128; ++i) {
        const char32_t character = table.upper[i];
        if (character == 0 || isControl(character) || character < 0x80)
            continue; // a control would let text drive the printer
        m_upper[i] = character;
        m_sorted.push_back({character, static_cast<unsigned char>(0x80 + i)});
    }
    addCompatibilityForms();
    std::sort(m_sorted.begin(), m_sorted.end(), [](const UpperEntry &a, const UpperEntry &b) {
        return a.character < b.character || (a.character == b.character && a.byte < b.byte);
    });
}

void EscPosCodePage::addCompatibilityForms()
{
    const auto has = [this](char32_t character) {
        return std::any_of(m_sorted.begin(), m_sorted.end(),
                           [character](const UpperEntry &entry) { return entry.character == character; });
    };
    const std::vector<UpperEntry> table = m_sorted;
    for (const UpperEntry &entry : table) {
        if (QChar::decompositionTag(entry.character) != QChar::Compat)
            continue;
        const QList<uint> form = QChar::decomposition(entry.character).toUcs4();
        if (form.size() == 1 && !has(form.front()))
            m_sorted.push_back({form.front(), entry.byte});
    }
}

const EscPosCodePage *EscPosCodePage::byName(QStringView name)
{
    // Each table's encoder is set up on first use: a run needs one or two of them.
    constexpr int MostTables = 16;
    static std::array<std::once_flag, MostTables> built;
    static std::array<std::unique_ptr<EscPosCodePage>, MostTables> pages;
    for (int i = 0; i < codePageTableCount && i < MostTables; ++i) {
        const CodePageTable &table = codePageTables[i];
        if (name.compare(QLatin1String(table.name), Qt::CaseInsensitive) != 0)
            continue;
        std::call_once(built[i],
                       [&table, &page = pages[i]] { page = std::make_unique<EscPosCodePage>(table); });
        return pages[i].get();
    }
    return nullptr;
}

const EscPosCodePage *EscPosCodePage::byEpsonNumber(int number)
{
    for (int i = 0; i < codePageTableCount; ++i) {
        if (codePageTables[i].epsonNumber == number)
            return byName(QString::fromLatin1(codePageTables[i].name));
    }
    return nullptr;
}

QStringList EscPosCodePage::names()
{
    QStringList list;
    for (int i = 0; i < codePageTableCount; ++i)
        list.append(QString::fromLatin1(codePageTables[i].name));
    return list;
}

QByteArray EscPosCodePage::encode(QStringView text) const
{
    QByteArray out;
    encode(text, &out);
    return out;
}

void EscPosCodePage::encode(QStringView text, QByteArray *out) const
{
    // No character takes more than one byte, so room for them all is made once.
    const qsizetype start = out->size();
    out->resize(start + text.size());
    char *next = out->data() + start;
    for (auto it = text.begin(); it != text.end(); ++it) {
        char32_t character = it->unicode();
        if (character >= 0x20 && character < 0x7f) {
            *next++ = static_cast<char>(character);
            continue;
        }
        if (it->isHighSurrogate() && it + 1 != text.end() && (it + 1)->isLowSurrogate()) {
            character = QChar::surrogateToUcs4(*it, *(it + 1));
            ++it;
        }
        if (character == u'\n') {
            *next++ = '\n';
        } else if (character < 0x80) {
            *next++ = '?'; // a control character
        } else {
            const auto found = std::lower_bound(
                m_sorted.begin(), m_sorted.end(), character,
                [](const UpperEntry &entry, char32_t wanted) { return entry.character < wanted; });
            *next++ = found != m_sorted.end() && found->character == character
                          ? static_cast<char>(found->byte)
                          : '?';
        }
    }
    out->resize(next - out->constData());
}

QString EscPosCodePage::decode(QByteArrayView bytes) const
{
    QString text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (value >= 0x80) {
            const char32_t character = m_upper[value - 0x80];
            if (character == 0)
                text.append(QChar::ReplacementCharacter);
            else
                text.append(QString::fromUcs4(&character, 1));
        } else {
            text.append(isControl(value) && value != '\n' ? QChar(QChar::ReplacementCharacter)
                                                          : QChar(value));
        }
    }
    return text;
}

EscPosTextDecoder::EscPosTextDecoder() : m_page(EscPosCodePage::byEpsonNumber(0)) {}

void EscPosTextDecoder::initialize()
{
    m_page = EscPosCodePage::byEpsonNumber(0);
}

void EscPosTextDecoder::selectTable(int epsonNumber)
{
    const EscPosCodePage *page = EscPosCodePage::byEpsonNumber(epsonNumber);
    m_page = page ? page : EscPosCodePage::byEpsonNumber(0);
}
