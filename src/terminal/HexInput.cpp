#include "terminal/HexInput.h"

namespace {

int digitValue(QChar c) {
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}

bool isSeparator(QChar c) { return c == u',' || c == u' ' || c == u'\t'; }

}  // namespace

HexInput parseHexInput(QStringView text) {
    HexInput out;
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n) {
        if (isSeparator(text[i])) {
            ++i;
            continue;
        }
        const qsizetype groupStart = i;
        if (i + 1 < n && text[i] == u'0' && (text[i + 1] == u'x' || text[i + 1] == u'X'))
            i += 2;
        const qsizetype digitsStart = i;
        while (i < n && digitValue(text[i]) >= 0)
            ++i;
        const qsizetype digits = i - digitsStart;
        if (i < n && !isSeparator(text[i])) {
            out.errorAt = i;
            return out;
        }
        // "0x" alone, or an odd run longer than one digit: the place where it went wrong is the group.
        if (digits == 0 || (digits > 1 && digits % 2 != 0)) {
            out.errorAt = digits == 0 ? groupStart : digitsStart + digits - 1;
            return out;
        }
        if (digits == 1) {
            out.bytes.append(char(digitValue(text[digitsStart])));
            continue;
        }
        for (qsizetype d = digitsStart; d < i; d += 2)
            out.bytes.append(char(digitValue(text[d]) * 16 + digitValue(text[d + 1])));
    }
    out.bytes.squeeze();
    return out;
}

QString hexText(const QByteArray& bytes) {
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}
