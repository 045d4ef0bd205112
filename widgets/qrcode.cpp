#include "widgets/qrcode.h"

#include <QPainter>

#include <memory>
#include <qrencode.h>

namespace {

constexpr int margin = 4;       // modules, on each side
constexpr int mostVersion = 10; // 57 modules: three pixels each on the canvas

} // namespace

QrCode::QrCode(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::NoFocus);
}

void QrCode::setText(const QByteArray &text)
{
    m_modules.clear();
    m_width = 0;
    update();
    if (text.isEmpty())
        return;
    const auto *bytes = reinterpret_cast<const unsigned char *>(text.constData());
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> made(
        QRcode_encodeData(int(text.size()), bytes, 0, QR_ECLEVEL_L), &QRcode_free);
    if (!made || made->version > mostVersion)
        return;
    m_width = made->width;
    for (int i = 0; i < m_width * m_width; ++i)
        m_modules += char(made->data[i] & 1);
}

void QrCode::paintEvent(QPaintEvent *)
{
    if (m_width == 0)
        return;
    QPainter painter(this);
    // Whole pixels of the screen, so that no edge is blurred.
    const qreal ratio = painter.device()->devicePixelRatio();
    const int pixels = int(qMin(width(), height()) * ratio);
    const int module = qMax(1, pixels / (m_width + 2 * margin));
    const int side = module * (m_width + 2 * margin);
    const QPoint corner((int(width() * ratio) - side) / 2, (int(height() * ratio) - side) / 2);
    painter.scale(1 / ratio, 1 / ratio);
    painter.fillRect(QRect(corner, QSize(side, side)), Qt::white);
    for (int i = 0; i < m_modules.size(); ++i) {
        if (m_modules.at(i) != 0)
            painter.fillRect(corner.x() + (margin + i % m_width) * module, corner.y() + (margin + i / m_width) * module,
                             module, module, Qt::black);
    }
}
