// Pictures of albums, decoded, scaled and written as JPEG.
#include "server/media/reading.h"
#include "server/media/tagfile.h"

#include <png.h>
#include <turbojpeg.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::media {

namespace {

// Red, green, blue; rows without gaps.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> pixels;
};

void refuseSize(int width, int height)
{
    if (width < 1 || height < 1 || width > mostPicturePixels || height > mostPicturePixels)
        throw std::runtime_error("a picture of " + std::to_string(width) + " x " + std::to_string(height));
}

struct TurboCloser {
    void operator()(void *handle) const { tjDestroy(handle); }
};

Image decodedJpeg(std::string_view bytes)
{
    const std::unique_ptr<void, TurboCloser> decoder(tjInitDecompress());
    const auto *data = reinterpret_cast<const unsigned char *>(bytes.data());
    Image image;
    int sampling = 0;
    int space = 0;
    if (!decoder ||
        tjDecompressHeader3(decoder.get(), data, bytes.size(), &image.width, &image.height, &sampling, &space) != 0)
        throw std::runtime_error("not a JPEG picture");
    refuseSize(image.width, image.height);
    // The decoder scales by powers of two almost for nothing.
    int divisor = 1;
    while (divisor < 8 && std::min(image.width, image.height) / (2 * divisor) >= coverPixels)
        divisor *= 2;
    image.width = (image.width + divisor - 1) / divisor;
    image.height = (image.height + divisor - 1) / divisor;
    image.pixels.resize(static_cast<size_t>(image.width) * static_cast<size_t>(image.height) * 3);
    const int result = tjDecompress2(decoder.get(), data, bytes.size(), image.pixels.data(), image.width, 0,
                                     image.height, TJPF_RGB, TJFLAG_LIMITSCANS);
    // Pictures that are cut off or have a wrong byte are shown as far as they go.
    if (result != 0 && tjGetErrorCode(decoder.get()) == TJERR_FATAL)
        throw std::runtime_error("the JPEG picture cannot be decoded");
    return image;
}

Image decodedPng(std::string_view bytes)
{
    if (bytes.substr(0, 4096).find("acTL") != std::string_view::npos)
        throw std::runtime_error("an animated picture");
    png_image head{};
    head.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&head, bytes.data(), bytes.size()))
        throw std::runtime_error("not a PNG picture");
    const std::unique_ptr<png_image, void (*)(png_image *)> closer(&head, png_image_free);
    Image image;
    image.width = static_cast<int>(std::min<png_uint_32>(head.width, mostPicturePixels + 1));
    image.height = static_cast<int>(std::min<png_uint_32>(head.height, mostPicturePixels + 1));
    refuseSize(image.width, image.height);
    head.format = PNG_FORMAT_RGB;
    image.pixels.resize(PNG_IMAGE_SIZE(head));
    const png_color behind{0, 0, 0};
    if (!png_image_finish_read(&head, &behind, image.pixels.data(), 0, nullptr))
        throw std::runtime_error("the PNG picture cannot be decoded");
    return image;
}

// Every new pixel is the mean of the old ones under it.
Image scaledDown(const Image &from, int width, int height)
{
    Image to{width, height, std::vector<unsigned char>(static_cast<size_t>(width) * static_cast<size_t>(height) * 3)};
    for (int y = 0; y < height; ++y) {
        const int top = static_cast<int>(int64_t(y) * from.height / height);
        const int bottom = std::max(top + 1, static_cast<int>(int64_t(y + 1) * from.height / height));
        for (int x = 0; x < width; ++x) {
            const int left = static_cast<int>(int64_t(x) * from.width / width);
            const int right = std::max(left + 1, static_cast<int>(int64_t(x + 1) * from.width / width));
            unsigned sum[3] = {0, 0, 0};
            for (int row = top; row < bottom; ++row) {
                const unsigned char *pixel =
                    from.pixels.data() +
                    (static_cast<size_t>(row) * static_cast<size_t>(from.width) + static_cast<size_t>(left)) * 3;
                for (int column = left; column < right; ++column, pixel += 3) {
                    for (int colour = 0; colour < 3; ++colour)
                        sum[colour] += pixel[colour];
                }
            }
            const auto count = static_cast<unsigned>((bottom - top) * (right - left));
            unsigned char *pixel =
                to.pixels.data() + (static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 3;
            for (int colour = 0; colour < 3; ++colour)
                pixel[colour] = static_cast<unsigned char>((sum[colour] + count / 2) / count);
        }
    }
    return to;
}

std::string encodedJpeg(const Image &image)
{
    const std::unique_ptr<void, TurboCloser> encoder(tjInitCompress());
    for (const int quality : {85, 70, 50}) {
        unsigned char *bytes = nullptr;
        unsigned long length = 0;
        const int result = encoder ? tjCompress2(encoder.get(), image.pixels.data(), image.width, 0, image.height,
                                                 TJPF_RGB, &bytes, &length, TJSAMP_420, quality, 0)
                                   : -1;
        const std::unique_ptr<unsigned char, void (*)(unsigned char *)> owner(bytes, tjFree);
        if (result != 0)
            break;
        if (length < mostAnswerBytes - 1024)
            return {reinterpret_cast<const char *>(bytes), length};
    }
    throw std::runtime_error("the picture cannot be written as JPEG");
}

Verdict answerCover(std::string_view picture, FieldWriter &answer)
{
    try {
        answer.bytes(Key::Jpeg, scaledCover(picture));
        return Verdict::Done;
    } catch (const std::runtime_error &error) {
        return refused(answer, error.what());
    }
}

} // namespace

std::string scaledCover(std::string_view picture)
{
    if (picture.size() > mostPictureBytes)
        throw std::runtime_error("a picture of " + std::to_string(picture.size() >> 20) + " MiB");
    Image image;
    if (picture.starts_with("\xff\xd8\xff"))
        image = decodedJpeg(picture);
    else if (picture.starts_with("\x89PNG"))
        image = decodedPng(picture);
    else
        throw std::runtime_error("neither a JPEG nor a PNG picture");
    const double factor = std::min(1.0, double(coverPixels) / std::max(image.width, image.height));
    const int width = std::max(1, static_cast<int>(std::lround(image.width * factor)));
    const int height = std::max(1, static_cast<int>(std::lround(image.height * factor)));
    if (factor < 1.0)
        image = scaledDown(image, width, height);
    return encodedJpeg(image);
}

Verdict readEmbeddedPicture(int descriptor, FieldWriter &answer)
{
    const TagFile file(descriptor);
    const std::string picture = file.container().empty() ? std::string() : file.picture();
    if (picture.empty())
        return refused(answer, "there is no picture in it");
    return answerCover(picture, answer);
}

Verdict readCoverFile(int descriptor, FieldWriter &answer)
{
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || status.st_size <= 0)
        return refused(answer, "an empty picture");
    if (static_cast<size_t>(status.st_size) > mostPictureBytes)
        return refused(answer, "a picture of " + std::to_string(status.st_size >> 20) + " MiB");
    std::string bytes(static_cast<size_t>(status.st_size), '\0');
    const ssize_t got = ::pread(descriptor, bytes.data(), bytes.size(), 0);
    bytes.resize(got > 0 ? static_cast<size_t>(got) : 0);
    return answerCover(bytes, answer);
}

} // namespace velmora::media
