// velmora-fuzz-media: has damaged copies of music files read by velmora-media or velmora-media-formats, as the service
// does it, and counts what came of them. Keeps each copy over which the worker broke down.
//   velmora-fuzz-media WORKER COUNT FOLDER FILE...
#include "server/media/mediaworker.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <random>
#include <unistd.h>

using namespace velmora::media;

namespace {

std::string mutated(std::string bytes, std::mt19937 &random)
{
    // Heads are short and decide the most: half of the changes fall there.
    const size_t head = std::min<size_t>(bytes.size(), 2048);
    for (unsigned changes = 1 + random() % 24; changes > 0; --changes) {
        const size_t at = random() % 2 == 0 ? random() % head : random() % bytes.size();
        switch (random() % 5) {
        case 0:
            bytes[at] = static_cast<char>(0xff);
            break;
        case 1:
            bytes[at] = 0;
            break;
        case 2:
            bytes[at] = static_cast<char>(static_cast<unsigned char>(bytes[at]) ^ 1U << random() % 8);
            break;
        case 3: // pieces change places
            std::memmove(bytes.data() + at, bytes.data() + random() % head,
                         std::min<size_t>(32, bytes.size() - std::max(at, head)));
            break;
        default:
            bytes[at] = static_cast<char>(random());
        }
    }
    if (random() % 8 == 0)
        bytes.resize(random() % bytes.size());
    return bytes;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 5) {
        std::fputs("usage: velmora-fuzz-media WORKER COUNT FOLDER FILE...\n", stderr);
        return 2;
    }
    const int count = std::atoi(argv[2]);
    const std::filesystem::path folder = argv[3];
    std::vector<std::string> originals;
    for (int i = 4; i < argc; ++i) {
        std::ifstream stream(argv[i], std::ios::binary);
        originals.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
        if (originals.back().size() < 64) {
            std::fprintf(stderr, "%s is too small\n", argv[i]);
            return 2;
        }
    }
    std::mt19937 random(20);
    const bool isFormats = std::filesystem::path(argv[1]).filename() == "velmora-media-formats";
    MediaWorker worker(argv[1], isFormats ? transcodingRole : nullptr);
    const std::filesystem::path transcoded = folder / "transcoded";
    int outcomes[6] = {};
    for (int i = 0; i < count; ++i) {
        const std::filesystem::path mutant = folder / ("mutant-" + std::to_string(i));
        std::ofstream(mutant, std::ios::binary)
            << mutated(originals[static_cast<size_t>(i) % originals.size()], random);
        const int file = ::open(mutant.c_str(), O_RDONLY | O_CLOEXEC);
        MediaTags tags;
        MediaAnalysis analysis;
        std::string jpeg;
        std::string problem;
        bool isKept = false;
        std::vector<Outcome> results = {worker.readTags(file, &tags, &problem),
                                        worker.analyse(file, 1, &analysis, &problem)};
        if (isFormats) {
            const int to = ::open(transcoded.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
            uint64_t bytes = 0;
            results.push_back(worker.transcode(file, to, 1, 64u << 20, &bytes, &problem));
            ::close(to);
        } else {
            results.push_back(worker.readPicture(Operation::Picture, file, &jpeg, &problem));
            results.push_back(worker.readPicture(Operation::Cover, file, &jpeg, &problem));
        }
        for (const Outcome outcome : results) {
            ++outcomes[static_cast<size_t>(outcome)];
            isKept = isKept || outcome == Outcome::Crashed || outcome == Outcome::TooSlow;
        }
        ::close(file);
        if (!isKept)
            ::unlink(mutant.c_str());
    }
    std::printf("%d files: %d answers, %d refusals, %d breakdowns, %d too slow, %d without a worker, %d without room\n",
                count, outcomes[0], outcomes[1], outcomes[2], outcomes[3], outcomes[4], outcomes[5]);
    return outcomes[2] + outcomes[3] + outcomes[4] + outcomes[5] == 0 ? 0 : 1;
}
