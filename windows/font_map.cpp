#include "windows/font_map.h"

#include <QStringList>

#include <cmath>
#include <cstring>

namespace {

// Installed stand-ins tried after the face itself.
QStringList FallbacksFor(const QString& face) {
    const QString f = face.toLower();
    if (f == QLatin1String("courier new") || f == QLatin1String("courier"))
        return {QStringLiteral("DejaVu Sans Mono"), QStringLiteral("Liberation Mono")};
    if (f == QLatin1String("times") || f == QLatin1String("times new roman"))
        return {QStringLiteral("Times New Roman"), QStringLiteral("DejaVu Serif"),
                QStringLiteral("Liberation Serif")};
    if (f == QLatin1String("symbol")) return {QStringLiteral("DejaVu Sans")};
    return {};
}

QFont::StyleHint HintFor(const QString& face, uint8_t pitchAndFamily) {
    if ((pitchAndFamily & 0x03) == kFixedPitch) return QFont::TypeWriter;
    const QString f = face.toLower();
    if ((pitchAndFamily & 0xF0) == kFamilyRoman || f.startsWith(QLatin1String("times")))
        return QFont::Serif;
    return QFont::AnyStyle;
}

}  // namespace

QFont FontFromLogFont(const LogFont& f) {
    QFont font;
    char face[kLogFontFaceChars];
    std::memcpy(face, f.faceName, sizeof face);
    face[kLogFontFaceChars - 1] = 0;
    const QString family = QString::fromLatin1(face);
    if (!family.isEmpty()) {
        QStringList families{family};
        families << FallbacksFor(family);
        font.setFamilies(families);
    }
    font.setStyleHint(HintFor(family, f.pitchAndFamily));
    font.setFixedPitch((f.pitchAndFamily & 0x03) == kFixedPitch);
    // Heights come from files: keep them to a readable, drawable range.
    const int pixels = std::abs(f.height);
    if (pixels >= 4 && pixels <= 400)
        font.setPixelSize(pixels);
    else
        font.setPointSize(10);
    const int weight = f.weight <= 0 ? 400 : qBound(100, int(f.weight), 900);
    font.setWeight(static_cast<QFont::Weight>(weight));
    font.setItalic(f.italic != 0);
    font.setUnderline(f.underline != 0);
    font.setStrikeOut(f.strikeOut != 0);
    return font;
}

LogFont LogFontFromFont(const QFont& font, int dpiY) {
    LogFont f;
    if (font.pixelSize() > 0)
        f.height = -font.pixelSize();
    else
        f.height = -static_cast<int32_t>(std::lround(font.pointSizeF() * dpiY / 72.0));
    f.weight = font.weight();
    f.italic = font.italic();
    f.underline = font.underline();
    f.strikeOut = font.strikeOut();
    const QString family = font.families().isEmpty() ? font.family() : font.families().first();
    f.charSet =
        family.compare(QLatin1String("Symbol"), Qt::CaseInsensitive) == 0 ? kSymbolCharSet : 0;
    f.outPrecision = 8;
    f.clipPrecision = 2;
    f.quality = 1;
    const bool fixed = font.fixedPitch() || font.styleHint() == QFont::TypeWriter ||
                       font.styleHint() == QFont::Monospace;
    f.pitchAndFamily =
        fixed
            ? (kFixedPitch | kFamilyModern)
            : (kVariablePitch | (font.styleHint() == QFont::Serif ? kFamilyRoman : kFamilyModern));
    SetFaceName(&f, family.toLatin1().constData());
    return f;
}
