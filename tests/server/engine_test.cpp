// The engine on a library that the test composes: likeness, styles, scores, rules, learning, reasons.

#include "server/engine/reasons.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <set>

namespace velmora::engine {
namespace {

const std::vector<EngineStyle> styles = {
    {"folk", "folk"}, {"rock", "rock"}, {"ambient", "ambient"}, {"Électro", "electro"}};

struct LibrarySettings {
    int styles = 4;
    int artistsAStyle = 6;
    int tracksAnArtist = 5;
    bool isTagged = true;
    bool isHeard = true;
};

// Tracks of one style sound alike. Ids count from 1, by style and then by artist. Albums have three tracks.
EngineMusic library(const LibrarySettings &settings = {})
{
    EngineMusic music;
    music.styles = styles;
    std::mt19937 random(3);
    std::normal_distribution<float> normal;
    for (int style = 0; style < settings.styles; ++style) {
        media::Descriptor centre;
        std::generate(centre.begin(), centre.end(), [&] { return normal(random); });
        for (int artist = 0; artist < settings.artistsAStyle; ++artist) {
            for (int song = 0; song < settings.tracksAnArtist; ++song) {
                EngineTrack track;
                track.id = static_cast<int64_t>(music.tracks.size()) + 1;
                track.artist = 100 + style * settings.artistsAStyle + artist;
                track.album = 1000 + track.artist * 10 + song / 3;
                track.tempo = 70 + 10 * song;
                if (settings.isTagged)
                    track.tags = {{style, 1}};
                if (settings.isHeard) {
                    track.descriptor = centre;
                    for (float &number : *track.descriptor)
                        number += 0.7f * normal(random);
                    (*track.descriptor)[media::number::clearness] = 0.8f;
                    (*track.descriptor)[media::number::logTempo] = std::log2(static_cast<float>(track.tempo));
                }
                music.tracks.push_back(std::move(track));
            }
        }
    }
    return music;
}

std::shared_ptr<const EngineIndex> indexOf(EngineMusic music, StyleShares::Votes votes = StyleShares::Votes::Taken)
{
    return std::make_shared<EngineIndex>(std::move(music), votes);
}

int styleOf(int64_t id, const LibrarySettings &settings = {})
{
    return static_cast<int>(id - 1) / (settings.artistsAStyle * settings.tracksAnArtist);
}

Seed trackSeed(int64_t id)
{
    return {Seed::Kind::Track, id, {}};
}

Seed styleSeed(const std::string &style)
{
    return {Seed::Kind::Style, 0, style};
}

// Plays so many tracks of a station; returns their ids in order.
std::vector<int64_t> play(const std::shared_ptr<const EngineIndex> &index, const StationTaste &taste, int count,
                          Circumstances now = {}, uint64_t seed = 1)
{
    const StationScores scores(index, taste);
    Noise noise(seed);
    std::vector<int64_t> ids;
    for (int i = 0; i < count; ++i) {
        const std::optional<Pick> pick = choose(scores, now, noise);
        if (!pick)
            break;
        ids.push_back(index->facts(pick->candidate().track).id);
        now.recent.insert(now.recent.begin(), ids.back());
        ++now.plays[ids.back()];
    }
    return ids;
}

double share(const std::vector<int64_t> &ids, const std::function<bool(int64_t)> &is)
{
    return static_cast<double>(std::count_if(ids.begin(), ids.end(), is)) / static_cast<double>(ids.size());
}

TEST(EngineTest, LikenessIsMutualBetweenZeroAndOneAndHighestAmongTracksThatSoundAlike)
{
    EngineMusic music = library();
    music.tracks[7].descriptor.reset();
    const auto index = indexOf(std::move(music));
    const Likeness &likeness = index->likeness();
    EXPECT_FALSE(likeness.isDescribed(7));
    double same = 0, other = 0;
    for (size_t track = 10; track < index->size(); ++track) {
        const float near = likeness.all(track, track / 30 * 30 + 9), far = likeness.all(track, (track + 45) % 120);
        EXPECT_TRUE(near >= 0 && near <= 1 && far >= 0 && far <= 1);
        EXPECT_FLOAT_EQ(likeness.all(track, 9), likeness.all(9, track));
        same += static_cast<double>(near);
        other += static_cast<double>(far);
    }
    EXPECT_GT(same, 3 * other);

    // Half of the tracks lie a deviation above the mean in each number, half below, and one far away in one number.
    std::vector<media::Descriptor> halves(20);
    for (size_t track = 0; track < halves.size(); ++track)
        halves[track].fill(track % 2 == 0 ? 1.0f : -1.0f);
    halves[0][5] = 1e6f;
    std::vector<const media::Descriptor *> all;
    for (const media::Descriptor &descriptor : halves)
        all.push_back(&descriptor);
    const Likeness plain(all);
    EXPECT_NEAR(plain.distances(2, 3)[1], 2, 0.02);
    EXPECT_LT(plain.distances(0, 2)[0], 0.3f) << "one number does not tear tracks apart";
}

TEST(EngineTest, StylesComeFromOwnTagsThenTheArtistsThenWhatSoundsAlike)
{
    EngineMusic music = library();
    music.tracks[0].tags = {{1, 1}}; // wrongly tagged rock by an artist of folk
    music.tracks[1].tags.clear();    // so the artist's tags are folk and that one rock
    for (size_t song = 30; song < 35; ++song)
        music.tracks[song].tags.clear(); // an artist without any tag: only the sound tells
    const auto silent = indexOf(music, StyleShares::Votes::Ignored);
    EXPECT_NEAR(silent->shares().share(0, 1), 1 / 1.6, 0.001);
    EXPECT_NEAR(silent->shares().share(0, 0), 0.6 / 1.6, 0.001);
    EXPECT_NEAR(silent->shares().share(1, 0), 0.75, 0.001);
    EXPECT_TRUE(silent->shares().of(32).empty());
    EXPECT_EQ(silent->shares().agreement(), 0);

    const auto heard = indexOf(std::move(music));
    EXPECT_GT(heard->shares().agreement(), 0.9f);
    EXPECT_GT(heard->shares().share(0, 0), heard->shares().share(0, 1)) << "the sound corrects the tag";
    EXPECT_GT(heard->shares().share(32, 1), 0.9f);
    EXPECT_FALSE(heard->shares().isTagged(32, 1));
    EXPECT_TRUE(heard->shares().isTagged(1, 0));

    EngineMusic wordy = library(); // more styles than are told apart
    for (int i = 0; i < 70'000; ++i)
        wordy.styles.push_back({"word " + std::to_string(i), ""});
    std::rotate(wordy.styles.begin(), wordy.styles.begin() + 4, wordy.styles.end());
    for (EngineTrack &track : wordy.tracks)
        track.tags = {{70'000 + track.tags[0].style, 1}};
    wordy.tracks[0].tags = {{69'999, 1}};
    const auto bound = indexOf(std::move(wordy), StyleShares::Votes::Ignored);
    EXPECT_EQ(bound->styles().size(), 4096u);
    EXPECT_EQ(bound->shares().share(40, bound->findStyle("rock").value()), 1);

    EngineMusic random = library();
    for (EngineTrack &track : random.tracks)
        track.tags = {{static_cast<int>(track.id * 7 % 13 % 4), 1}};
    EXPECT_LT(indexOf(std::move(random))->shares().agreement(), 0.15f);
}

TEST(EngineTest, ScoresAreTheSumsOfTheirTerms)
{
    const auto index = indexOf(library());
    StationTaste taste{{trackSeed(1), styleSeed("rock")}, {3, 40}, {100}, {}};
    const StationScores before(index, taste);
    taste.liked.push_back(65);
    taste.disliked.push_back(90);
    taste.events = {{65, true, 1}, {90, false, 1}};
    const StationScores grown(index, taste, &before), anew(index, taste);
    for (Position track = 0; track < index->size(); ++track) {
        const Terms terms = anew.terms(track);
        EXPECT_NEAR(sumOf(terms), anew.base(track), 1e-4);
        EXPECT_EQ(grown.base(track), anew.base(track)) << "reused comparisons have the same result";
    }
    const auto term = [](const StationScores &scores, int64_t id, Term wanted) {
        Terms terms = scores.terms(static_cast<Position>(id - 1));
        return at(terms, wanted);
    };
    EXPECT_NEAR(term(anew, 1, Term::Sound), 2.0, 0.05) << "a seed is like itself";
    EXPECT_NEAR(term(anew, 40, Term::Sound), 1.0, 0.25) << "a thumb up counts half";
    EXPECT_NEAR(term(anew, 2, Term::Artist), 0.6, 1e-6);
    EXPECT_EQ(term(anew, 30, Term::Artist), 0);
    EXPECT_NEAR(term(anew, 100, Term::Unlike), -2.5, 0.05);
    EXPECT_EQ(term(anew, 20, Term::Unlike), 0);
    EXPECT_GT(term(anew, 31, Term::Style), term(anew, 75, Term::Style) + 1);
    EXPECT_TRUE(anew.isRelated(30) && !anew.isRelated(110));
}

TEST(EngineTest, AStationPlaysWhatItWasMadeFrom)
{
    struct Case {
        const char *name;
        LibrarySettings settings;
        StationTaste taste;
        int style;
        double least;
    };
    const Case cases[] = {
        {"a style by its tags", {4, 6, 5, true, false}, {{styleSeed("rock")}, {}, {}, {}}, 1, 1},
        {"a track by its sound", {4, 6, 5, false, true}, {{trackSeed(70)}, {}, {}, {}}, 2, 0.9},
        {"a track by both", {}, {{trackSeed(70)}, {}, {}, {}}, 2, 1},
        {"an artist", {}, {{{Seed::Kind::Artist, 120, {}}}, {}, {}, {}}, 3, 1},
        {"nothing but thumbs up", {}, {{}, {31, 40, 50}, {}, {}}, 1, 0.9},
    };
    for (const Case &row : cases) {
        const std::vector<int64_t> ids = play(indexOf(library(row.settings)), row.taste, 20);
        EXPECT_GE(share(ids, [&](int64_t id) { return styleOf(id, row.settings) == row.style; }), row.least)
            << row.name;
    }
}

TEST(EngineTest, AFewClustersOfALargeLibraryStandForAllOfIt)
{
    const LibrarySettings large{4, 60, 25, true, true}; // 6,000 tracks
    EngineMusic music = library(large);
    music.styles.push_back({"rare", "rare"});
    // Sixty tracks by four artists.
    const auto isOfRareStyle = [](int64_t id) { return (id - 1) / 25 % 60 == 0 && (id - 1) % 25 < 15; };
    for (size_t track = 0; track < music.tracks.size(); ++track) {
        const bool isRare = isOfRareStyle(static_cast<int64_t>(track) + 1);
        if (isRare || track % 7 == 0)
            music.tracks[track].descriptor.reset();
        if (isRare)
            music.tracks[track].tags = {{4, 1}};
    }
    constexpr auto unheard = StyleShares::Votes::Ignored; // votes take long
    const auto whole = std::make_shared<EngineIndex>(music, unheard, nullptr, music.tracks.size());
    const auto index = indexOf(std::move(music), unheard);
    const TrackClusters &clusters = index->clusters();
    ASSERT_TRUE(clusters.size() > 40 && clusters.size() < 400 && whole->clusters().size() == 0);
    std::vector<int> times(index->size(), 0);
    for (size_t cluster = 0; cluster < clusters.size(); ++cluster) {
        for (const Position track : clusters.members(cluster)) {
            ++times[track];
            EXPECT_EQ(clusters.of(track), cluster);
            EXPECT_EQ(index->likeness().isDescribed(track), clusters.isDescribed(cluster));
        }
    }
    EXPECT_EQ(std::count(times.begin(), times.end(), 1), static_cast<std::ptrdiff_t>(index->size()));

    const StationTaste fromTrack{{trackSeed(2000)}, {2100}, {2200}, {{2100, true, 1}}};
    const StationScores bounded(index, fromTrack), all(whole, fromTrack);
    EXPECT_TRUE(bounded.best().size() >= 600 && bounded.best().size() <= 800) << bounded.best().size();
    double score = 0, best = 0;
    for (size_t rank = 0; rank < 300; ++rank) {
        score += static_cast<double>(bounded.best()[rank].base);
        best += static_cast<double>(all.best()[rank].base);
    }
    EXPECT_GT(score, 0.95 * best) << "the best tracks lie in the clusters that suit";
    EXPECT_NEAR(bounded.fitThreshold(), all.fitThreshold(), 0.15 * static_cast<double>(all.fitThreshold()));
    for (Position track = 15; track < index->size(); track += 70)
        EXPECT_NEAR(bounded.base(track), all.base(track), 0.05) << "what is no candidate has its score, too";

    // What was said stays true of few candidates: the rules, what is forbidden, a style of few tracks.
    Circumstances now;
    for (int64_t id = 1501; id <= 3000; ++id) {
        if (id % 30 != 0)
            now.excludedTracks.insert(id); // nearly all of the seed's style
    }
    const std::vector<int64_t> ids = play(index, fromTrack, 60, now);
    ASSERT_EQ(ids.size(), 60u);
    EXPECT_EQ(share(ids, [&](int64_t id) { return now.excludedTracks.contains(id); }), 0);
    EXPECT_GT(share(ids, [&](int64_t id) { return styleOf(id, large) == 1; }), 0.3);
    const std::vector<int64_t> rare = play(index, {{styleSeed("rare")}, {}, {}, {}}, 10);
    EXPECT_GE(share(rare, isOfRareStyle), 0.8);
    // Equally good tracks take turns.
    std::set<Position> seen;
    for (uint64_t list = 0; list < 8; ++list) {
        const StationScores ranked(index, {{styleSeed("folk")}, {}, {}, {}}, nullptr, list);
        for (const StationScores::Ranked &track : ranked.best())
            seen.insert(track.track);
    }
    EXPECT_GT(seen.size(), 1100u) << "of 1,500";
}

TEST(EngineTest, RulesHoldHoweverSmallTheLibrary)
{
    struct Case {
        int styles, artists, tracks;
    };
    for (const Case &row : {Case{4, 6, 5}, Case{2, 3, 2}, Case{1, 3, 4}, Case{1, 2, 4}, Case{3, 1, 4}}) {
        const LibrarySettings settings{row.styles, row.artists, row.tracks, true, false};
        const auto index = indexOf(library(settings));
        const std::vector<int64_t> ids = play(index, {{styleSeed("folk")}, {}, {}, {}}, 200);
        ASSERT_EQ(ids.size(), 200u);
        // A station of one artist has to leave its style, so the whole library fits there.
        const int fitting = row.artists * row.tracks;
        std::map<int64_t, int> last;
        for (int i = 0; i < 200; ++i) {
            const int64_t id = ids[static_cast<size_t>(i)];
            const auto artist = [&](int64_t track) { return index->facts(*index->find(track)).artist; };
            const auto before = last.find(id);
            EXPECT_TRUE(i == 0 || artist(id) != artist(ids[static_cast<size_t>(i) - 1])) << i;
            EXPECT_TRUE(before == last.end() || i - before->second > fitting / 2) << row.styles << ' ' << row.artists;
            last[id] = i;
        }
        EXPECT_GE(last.size(), static_cast<size_t>(fitting)) << "everything that fits is heard";
        const double right = share(ids, [&](int64_t id) { return styleOf(id, settings) == 0; });
        EXPECT_TRUE(row.artists == 1 || right == 1) << right;
    }
    const std::vector<int64_t> alone = play(indexOf(library({1, 1, 4})), {}, 40);
    ASSERT_EQ(alone.size(), 40u) << "one artist alone may follow itself";
    for (size_t i = 2; i < alone.size(); ++i)
        EXPECT_TRUE(alone[i] != alone[i - 1] && alone[i] != alone[i - 2]);
    EXPECT_TRUE(play(indexOf(library({1, 1, 1})), {}, 3).size() == 3 && play(indexOf({}), {}, 1).empty());
}

TEST(EngineTest, WhatIsForbiddenIsNeverPlayed)
{
    EngineMusic music = library();
    for (EngineTrack &track : music.tracks)
        track.isExplicit = track.id % 2 == 0;
    music.tracks[10].recording = 13; // the same recording as track 13
    music.tracks[22].recording = 23;
    music.replaced = {{501, 100, 23}, {502, 100, 777}}; // track 23 is a better file of 501
    for (size_t song = 15; song < 20; ++song) {         // one work, its movements stored backwards
        music.tracks[song].work = 5;
        music.tracks[song].movement = static_cast<int>(20 - song);
    }
    const auto index = indexOf(std::move(music));
    Circumstances now;
    now.allowsExplicit = false;
    now.excludedTracks = {1, 3, 501};
    now.excludedArtists = {102};
    now.absent = std::make_shared<std::unordered_set<int64_t>>(std::unordered_set<int64_t>{5, 7});
    const std::vector<int64_t> ids = play(index, {{styleSeed("folk")}, {}, {}, {}}, 100, now);
    const std::set<int64_t> out = {1, 3, 5, 7, 23};
    EXPECT_EQ(share(ids,
                    [&](int64_t id) {
                        return id % 2 == 0 || out.contains(id) || index->facts(*index->find(id)).artist == 102;
                    }),
              0);
    EXPECT_EQ(index->find(501), index->find(23)) << "what is said of a file holds for the better one";
    EXPECT_FALSE(index->find(502));
    const StationScores named(index, {{trackSeed(501)}, {}, {}, {}}), same(index, {{trackSeed(23)}, {}, {}, {}});
    EXPECT_EQ(named.base(50), same.base(50));

    const std::vector<int64_t> all = play(index, {{styleSeed("folk")}, {}, {}, {}}, 120);
    std::vector<int> movements;
    size_t lastTwin = 0, lastMovement = 0;
    for (size_t i = 0; i < all.size(); ++i) {
        if (all[i] == 11 || all[i] == 13) {
            EXPECT_TRUE(lastTwin == 0 || i + 1 - lastTwin > 14) << "a recording under two names";
            lastTwin = i + 1;
        }
        if (const int movement = index->facts(*index->find(all[i])).movement) {
            EXPECT_TRUE(lastMovement == 0 || i + 1 - lastMovement > 20);
            lastMovement = i + 1;
            movements.push_back(movement);
        }
    }
    ASSERT_GE(movements.size(), 3u);
    for (size_t i = 0; i < movements.size(); ++i)
        EXPECT_EQ(movements[i], 1 + static_cast<int>(i) % 5);
    now = {};
    now.plays = {{12, 3}};
    Noise noise(4);
    const Pick pick = choose(StationScores(index, {{styleSeed("folk")}, {}, {}, {}}), now, noise).value();
    for (const Candidate &candidate : pick.shortlist) {
        const bool isPlayed = index->facts(candidate.track).id == 12;
        EXPECT_NEAR(candidate.terms[static_cast<size_t>(Term::Fresh)], isPlayed ? -0.5 * std::log(4) : 0, 1e-5);
    }
    // A work goes on without the movement that has a thumb down.
    now = {};
    now.excludedTracks = {20, 18}; // the first and the third
    std::vector<int> rest;
    for (const int64_t id : play(index, {{styleSeed("folk")}, {}, {}, {}}, 200, now)) {
        if (const int movement = index->facts(*index->find(id)).movement)
            rest.push_back(movement);
    }
    ASSERT_GE(rest.size(), 4u);
    EXPECT_EQ(std::vector<int>(rest.begin(), rest.begin() + 4), (std::vector<int>{2, 4, 5, 2}));
}

TEST(EngineTest, ThumbsTeachTheModelAndDeletedOnesAreForgotten)
{
    const auto index = indexOf(library());
    StationTaste mixed;
    for (const char *style : {"folk", "rock", "ambient", "Électro"})
        mixed.seeds.push_back(styleSeed(style));
    const auto attribute = [&](int64_t id, Attribute wanted) {
        return index->attributes(*index->find(id))[static_cast<size_t>(wanted)];
    };
    const std::pair<const char *, std::function<bool(int64_t)>> listeners[] = {
        {"slow", [&](int64_t id) { return attribute(id, Attribute::Tempo) < -0.4f; }},
        {"minor", [&](int64_t id) { return attribute(id, Attribute::Minor) > 0.4f; }},
        {"one style", [](int64_t id) { return styleOf(id) == 2; }},
    };
    for (const auto &[name, likes] : listeners) {
        const std::vector<int64_t> plain = play(index, mixed, 20);
        StationTaste taste = mixed;
        Circumstances now;
        for (const int64_t id : plain) {
            (likes(id) ? taste.liked : taste.disliked).push_back(id);
            taste.events.push_back({id, likes(id), eventweight::thumb});
            if (!likes(id))
                now.excludedTracks.insert(id);
        }
        const double after = share(play(index, taste, 20, now, 5), likes);
        EXPECT_GE(after, std::min(0.95, 2 * share(play(index, mixed, 60, {}, 5), likes))) << name;
    }

    // Skips and sleeps teach less than thumbs. Events that are not passed in leave the model unchanged.
    const auto weightOf = [&](std::vector<TasteEvent> events) {
        return Taste(*index, events).weight(static_cast<size_t>(Attribute::Tempo));
    };
    const int64_t fast = 5, slow = 1;
    const float thumb = weightOf({{fast, true, eventweight::thumb}});
    EXPECT_GT(thumb, 0.1f);
    EXPECT_LT(weightOf({{slow, true, eventweight::thumb}}), -0.1f);
    EXPECT_LT(weightOf({{fast, false, eventweight::skipped}}), 0);
    EXPECT_GT(weightOf({{fast, false, eventweight::skipped}}), -thumb);
    EXPECT_EQ(weightOf({{99999, true, 1}}), 0);
    std::vector<TasteEvent> undecided;
    for (int i = 0; i < 40; ++i)
        undecided.push_back({fast, i % 2 == 0, 1});
    const float before = weightOf(undecided);
    undecided.push_back({fast, true, 1});
    EXPECT_LT(std::abs(weightOf(undecided) - before), thumb / 2) << "the more was heard, the less one thumb moves";
    EXPECT_EQ(weightOf(std::vector<TasteEvent>(10, {fast, true, 1})), weightOf([&] {
                  std::vector<TasteEvent> many(3, {99999, false, 1});
                  many.insert(many.end(), 10, {fast, true, 1});
                  return many;
              }()));
    std::vector<TasteEvent> old(20, {slow, true, 1});
    old.insert(old.end(), Taste::mostEvents, {fast, true, 1});
    EXPECT_EQ(weightOf(old), weightOf(std::vector<TasteEvent>(Taste::mostEvents, {fast, true, 1})))
        << "only the last 500 count";
}

// Scores the shortlist again with some terms at their means; independent of the engine's own code.
size_t winnerAtMeans(const Pick &pick, const std::vector<size_t> &terms)
{
    std::map<size_t, double> means;
    for (const size_t term : terms) {
        for (const Candidate &candidate : pick.shortlist)
            means[term] += static_cast<double>(candidate.terms[term]) / static_cast<double>(pick.shortlist.size());
    }
    std::vector<double> scores;
    for (const Candidate &candidate : pick.shortlist) {
        double score = static_cast<double>(candidate.noise);
        for (size_t term = 0; term < termCount; ++term)
            score += means.contains(term) ? means[term] : static_cast<double>(candidate.terms[term]);
        scores.push_back(score);
    }
    return static_cast<size_t>(std::max_element(scores.begin(), scores.end()) - scores.begin());
}

TEST(EngineTest, EveryReasonChangesTheChoiceAndHasTheWordsOfItsTerm)
{
    EngineMusic music = library();
    for (EngineTrack &track : music.tracks) {
        if (track.id % 3 == 0)
            track.tags.clear();
    }
    const auto index = indexOf(std::move(music));
    Noise noise(8);
    std::map<std::string, int> ids;
    for (int station = 0; station < 30; ++station) {
        StationTaste taste{{trackSeed(1 + station * 4)}, {}, {}, {}};
        Circumstances now;
        for (int i = 0; i < 15; ++i) {
            const StationScores scores(index, taste);
            const Pick pick = choose(scores, now, noise).value();
            const std::vector<size_t> terms = decisiveTerms(pick);
            const bool alone = std::all_of(terms.begin(), terms.end(),
                                           [&](size_t term) { return winnerAtMeans(pick, {term}) != pick.winner; });
            EXPECT_TRUE(alone || winnerAtMeans(pick, terms) != pick.winner);
            EXPECT_LE(terms.size(), 4u);
            const std::vector<ReasonText> reasons = explain(scores, pick);
            ASSERT_FALSE(reasons.empty());
            EXPECT_EQ(terms.empty(), reasons[0].id == "variety");
            for (const ReasonText &reason : reasons) {
                ++ids[reason.id];
                EXPECT_TRUE(std::all_of(reason.text.begin(), reason.text.end(), [](char c) {
                    return c >= ' ' && c < 0x7f;
                })) << reason.text;
            }
            const int64_t id = index->facts(pick.candidate().track).id;
            now.recent.insert(now.recent.begin(), id);
            ++now.plays[id];
            if (i % 3 == 0) {
                const bool isLiked = id % 5 < 3;
                (isLiked ? taste.liked : taste.disliked).push_back(id);
                taste.events.push_back({id, isLiked, 1});
            }
        }
    }
    for (const char *id : {"style", "sound", "beat", "learned"})
        EXPECT_GT(ids[id], 0) << id;
    EXPECT_LT(ids["variety"], 45) << "of 450";
}

TEST(EngineTest, AReasonClaimsNoMoreThanItsTermKnows)
{
    EngineMusic music = library();
    for (size_t song = 60; song < 65; ++song)
        music.tracks[song].tags.clear(); // an untagged artist that sounds like the third style
    const auto index = indexOf(std::move(music));
    const StationTaste taste{{trackSeed(1), styleSeed("ambient"), styleSeed("Électro")},
                             {40},
                             {118},
                             {{65, true, 1}, {70, true, 1}, {61, false, 1}}};
    const StationScores scores(index, taste);
    const StationScores calmer(index, {{}, {}, {}, {{65, false, 1}}});
    // A pick in which one term decides by itself.
    const auto wordsFor = [&](int64_t id, Term term, size_t learned = 0, bool isCalmer = false) {
        Pick pick;
        pick.shortlist.resize(2);
        pick.shortlist[0].track = static_cast<Position>(id - 1);
        pick.shortlist[1].track = 50;
        pick.shortlist[1].noise = 0.5f;
        pick.shortlist[0].terms[static_cast<size_t>(term) + learned] = 1;
        const std::vector<ReasonText> reasons = explain(isCalmer ? calmer : scores, pick);
        return reasons.size() == 1 ? reasons[0].text : "not one reason";
    };
    const size_t tempo = static_cast<size_t>(Attribute::Tempo);
    const std::pair<std::string, std::string> cases[] = {
        {wordsFor(70, Term::Style), "an ambient style"},
        {wordsFor(62, Term::Style), "a sound at home in ambient"},
        {wordsFor(92, Term::Style), "an electro style"},
        {wordsFor(3, Term::Artist), "an artist whom this station began with"},
        {wordsFor(2, Term::Sound), "a sound like the music this station began with"},
        {wordsFor(45, Term::Sound), "a sound like music that you gave a thumbs up"},
        {wordsFor(1, Term::Beat), "a slow beat"},
        {wordsFor(4, Term::Beat), "an unhurried beat"},
        {wordsFor(5, Term::Harmony), "a similar harmony"},
        {wordsFor(5, Term::FirstLearned, tempo), "the fast tempo that you like here"},
        {wordsFor(1, Term::FirstLearned, tempo), "a faster tempo than most, as you like it here"},
        {wordsFor(1, Term::FirstLearned, tempo, true), "the slow tempo that you like here"},
        {wordsFor(9, Term::Unlike), "a distance from music that you gave a thumbs down"},
        {wordsFor(9, Term::Fresh), "music that has not played here lately"},
    };
    for (const auto &[words, expected] : cases)
        EXPECT_EQ(words, expected);
    Pick chance;
    chance.shortlist.resize(3);
    chance.shortlist[0].noise = 1;
    EXPECT_EQ(explain(scores, chance)[0].text, "a change, by chance among tracks that fit");
}

} // namespace
} // namespace velmora::engine
