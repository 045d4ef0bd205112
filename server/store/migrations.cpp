#include "server/store/migrations.h"

#include "server/store/database.h"

#include <array>

namespace velmora::server {

namespace {

// Times are Unix seconds. Tokens of sessions and codes are stored as hashes only; tokens of stations, tracks, ads and
// music are not secrets without a session, so they are stored as they are and always looked up with their account.
constexpr const char *accountsAndDevices = R"sql(
CREATE TABLE settings (name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;
CREATE TABLE accounts (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  user_name TEXT NOT NULL,
  folded_name TEXT NOT NULL UNIQUE,
  password_hash TEXT NOT NULL,
  created_at INTEGER NOT NULL,
  is_active INTEGER NOT NULL DEFAULT 1,
  birth_year INTEGER,
  gender TEXT,
  zip_code TEXT,
  country_code TEXT,
  email_opt_in INTEGER NOT NULL DEFAULT 0,
  explicit_filter INTEGER NOT NULL DEFAULT 0,
  explicit_pin_hash TEXT
);
CREATE TABLE devices (
  device_id TEXT PRIMARY KEY,
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  key_hash TEXT NOT NULL,
  associated_at INTEGER NOT NULL
) WITHOUT ROWID;
CREATE INDEX devices_by_account ON devices(account_id);
CREATE TABLE sessions (
  token_hash TEXT PRIMARY KEY,
  kind TEXT NOT NULL CHECK (kind IN ('partner', 'user')),
  account_id INTEGER REFERENCES accounts(id) ON DELETE CASCADE,
  key_hash TEXT NOT NULL,
  device_id TEXT,
  expires_at INTEGER NOT NULL,
  CHECK ((kind = 'user') = (account_id IS NOT NULL))
) WITHOUT ROWID;
CREATE INDEX sessions_by_account ON sessions(account_id);
CREATE INDEX sessions_by_expiry ON sessions(expires_at);
CREATE TABLE activation_codes (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  code_hash TEXT NOT NULL UNIQUE,
  digits TEXT,
  key_hash TEXT,
  account_id INTEGER REFERENCES accounts(id) ON DELETE CASCADE,
  created_at INTEGER NOT NULL,
  expires_at INTEGER NOT NULL
);
CREATE INDEX activation_codes_by_digits ON activation_codes(digits);
CREATE TABLE grants (
  id INTEGER PRIMARY KEY,
  digits TEXT NOT NULL,
  key_hash TEXT NOT NULL,
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  expires_at INTEGER NOT NULL
);
CREATE INDEX grants_by_digits ON grants(digits);
CREATE TABLE resets (
  token_hash TEXT PRIMARY KEY,
  purpose TEXT NOT NULL,
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  expires_at INTEGER NOT NULL
) WITHOUT ROWID;
)sql";

// The search table holds folded text in which two blanks stand before every word, so that the index of three-letter
// pieces also answers words of one and two letters, by their beginning.
constexpr const char *catalogue = R"sql(
CREATE TABLE artists (id INTEGER PRIMARY KEY, public_id TEXT NOT NULL UNIQUE, name TEXT NOT NULL, folded TEXT NOT NULL);
CREATE INDEX artists_by_folded ON artists(folded);
CREATE TABLE albums (
  id INTEGER PRIMARY KEY,
  public_id TEXT NOT NULL UNIQUE,
  artist_id INTEGER NOT NULL REFERENCES artists(id),
  title TEXT NOT NULL,
  year INTEGER NOT NULL
);
CREATE INDEX albums_by_artist ON albums(artist_id, title);
CREATE TABLE tracks (
  id INTEGER PRIMARY KEY,
  public_id TEXT NOT NULL UNIQUE,
  artist_id INTEGER NOT NULL REFERENCES artists(id),
  album_id INTEGER NOT NULL REFERENCES albums(id),
  song TEXT NOT NULL,
  folded TEXT NOT NULL,
  style TEXT NOT NULL,
  mood TEXT NOT NULL,
  tempo INTEGER NOT NULL,
  year INTEGER NOT NULL,
  duration INTEGER NOT NULL,
  audio_path TEXT NOT NULL,
  audio_type TEXT NOT NULL,
  bitrate INTEGER NOT NULL,
  picture_path TEXT NOT NULL,
  is_explicit INTEGER NOT NULL DEFAULT 0,
  is_playable INTEGER NOT NULL
);
CREATE INDEX tracks_by_folded ON tracks(folded);
CREATE INDEX tracks_by_style ON tracks(is_playable, style, id);
CREATE INDEX tracks_by_artist ON tracks(artist_id);
CREATE TABLE ads (
  id INTEGER PRIMARY KEY,
  public_id TEXT NOT NULL UNIQUE,
  title TEXT NOT NULL,
  line2 TEXT NOT NULL,
  duration INTEGER NOT NULL,
  audio_path TEXT NOT NULL,
  audio_type TEXT NOT NULL,
  picture_path TEXT NOT NULL,
  is_playable INTEGER NOT NULL
);
CREATE VIRTUAL TABLE track_search USING fts5(song, artist, tokenize = 'trigram case_sensitive 1');
CREATE VIRTUAL TABLE artist_search USING fts5(name, tokenize = 'trigram case_sensitive 1');
)sql";

constexpr const char *stations = R"sql(
CREATE TABLE stations (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  token TEXT NOT NULL UNIQUE,
  name TEXT NOT NULL,
  is_tapestry INTEGER NOT NULL DEFAULT 0,
  is_shared INTEGER NOT NULL DEFAULT 0,
  allow_rename INTEGER NOT NULL DEFAULT 1,
  allow_delete INTEGER NOT NULL DEFAULT 1,
  allow_add_music INTEGER NOT NULL DEFAULT 1,
  allow_feedback INTEGER NOT NULL DEFAULT 1,
  created_at INTEGER NOT NULL,
  lists_issued INTEGER NOT NULL DEFAULT 0
);
CREATE INDEX stations_by_account ON stations(account_id);
CREATE TABLE seeds (
  station_id INTEGER NOT NULL REFERENCES stations(id) ON DELETE CASCADE,
  kind TEXT NOT NULL CHECK (kind IN ('artist', 'track', 'style')),
  target TEXT NOT NULL,
  PRIMARY KEY (station_id, kind, target)
) WITHOUT ROWID;
CREATE TABLE music_tokens (
  token TEXT PRIMARY KEY,
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  kind TEXT NOT NULL CHECK (kind IN ('artist', 'track', 'album', 'style')),
  target TEXT NOT NULL,
  UNIQUE (account_id, kind, target)
) WITHOUT ROWID;
CREATE TABLE issued_tracks (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  token TEXT NOT NULL UNIQUE,
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  station_id INTEGER NOT NULL REFERENCES stations(id) ON DELETE CASCADE,
  track_id INTEGER NOT NULL REFERENCES tracks(id) ON DELETE CASCADE,
  reasons TEXT NOT NULL,
  issued_at INTEGER NOT NULL
);
CREATE INDEX issued_tracks_by_station ON issued_tracks(station_id, id);
CREATE INDEX issued_tracks_by_time ON issued_tracks(issued_at);
CREATE TABLE issued_ads (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  token TEXT NOT NULL UNIQUE,
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  station_id INTEGER NOT NULL REFERENCES stations(id) ON DELETE CASCADE,
  ad_id INTEGER NOT NULL REFERENCES ads(id) ON DELETE CASCADE,
  issued_at INTEGER NOT NULL,
  registered_at INTEGER
);
CREATE INDEX issued_ads_by_account ON issued_ads(account_id, id);
CREATE INDEX issued_ads_by_time ON issued_ads(issued_at);
CREATE TABLE feedback (
  station_id INTEGER NOT NULL REFERENCES stations(id) ON DELETE CASCADE,
  track_id INTEGER NOT NULL REFERENCES tracks(id) ON DELETE CASCADE,
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  is_positive INTEGER NOT NULL,
  given_at INTEGER NOT NULL,
  PRIMARY KEY (station_id, track_id)
) WITHOUT ROWID;
CREATE INDEX feedback_by_account ON feedback(account_id, track_id);
CREATE TABLE sleeps (
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  track_id INTEGER NOT NULL REFERENCES tracks(id) ON DELETE CASCADE,
  until INTEGER NOT NULL,
  PRIMARY KEY (account_id, track_id)
) WITHOUT ROWID;
CREATE TABLE bookmarks (
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  kind TEXT NOT NULL CHECK (kind IN ('artist', 'track')),
  target INTEGER NOT NULL,
  created_at INTEGER NOT NULL,
  PRIMARY KEY (account_id, kind, target)
) WITHOUT ROWID;
CREATE TABLE track_events (
  id INTEGER PRIMARY KEY,
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  station_id INTEGER NOT NULL REFERENCES stations(id) ON DELETE CASCADE,
  track_id INTEGER NOT NULL REFERENCES tracks(id) ON DELETE CASCADE,
  type TEXT NOT NULL,
  seconds INTEGER NOT NULL,
  happened_at INTEGER NOT NULL
);
CREATE INDEX track_events_by_time ON track_events(happened_at);
)sql";

// An identity with another key is another device. A session of a device that was unlinked is kept, for the radio to
// learn of it.
constexpr const char *devicesByKey = R"sql(
CREATE TABLE devices_by_key (
  device_id TEXT NOT NULL,
  key_hash TEXT NOT NULL,
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  associated_at INTEGER NOT NULL,
  PRIMARY KEY (device_id, key_hash)
) WITHOUT ROWID;
INSERT INTO devices_by_key (device_id, key_hash, account_id, associated_at)
  SELECT device_id, key_hash, account_id, associated_at FROM devices;
DROP TABLE devices;
ALTER TABLE devices_by_key RENAME TO devices;
CREATE INDEX devices_by_account ON devices(account_id);
ALTER TABLE sessions ADD COLUMN is_revoked INTEGER NOT NULL DEFAULT 0;
)sql";

// Music from folders. Paths are bytes, because names of files need not be UTF-8; a file's path is relative to its root.
// A root, file or track that is gone is marked, never deleted: thumbs and stations hang on the track.
// files.left_out is empty, or the rule (server/library/leftout.h) that keeps the file out of the stations.
// Tracks of one recording share tracks.recording_id, the id of one of them; NULL: it is the only one.
// descriptors.numbers are half floats in the machine's little-endian order.
// plays.issue_id was the issued track's id, which is forgotten earlier than the play.
constexpr const char *ownMusic = R"sql(
CREATE TABLE roots (
  id INTEGER PRIMARY KEY,
  path BLOB NOT NULL UNIQUE,
  source TEXT NOT NULL DEFAULT 'folder' CHECK (source IN ('demo', 'folder')),
  is_configured INTEGER NOT NULL DEFAULT 1,
  is_present INTEGER NOT NULL DEFAULT 0,
  away_since INTEGER,
  problem TEXT NOT NULL DEFAULT '',
  device INTEGER NOT NULL DEFAULT 0,
  scanned_at INTEGER,
  tag_agreement REAL
);
CREATE TABLE files (
  id INTEGER PRIMARY KEY,
  root_id INTEGER NOT NULL REFERENCES roots(id) ON DELETE CASCADE,
  path BLOB NOT NULL,
  size INTEGER NOT NULL,
  mtime_ns INTEGER NOT NULL,
  inode INTEGER NOT NULL,
  track_id INTEGER REFERENCES tracks(id) ON DELETE SET NULL,
  sound_print BLOB,
  quality INTEGER NOT NULL DEFAULT 0,
  missing_since INTEGER,
  worker_version INTEGER NOT NULL DEFAULT 0,
  analysis_version INTEGER NOT NULL DEFAULT 0,
  tries INTEGER NOT NULL DEFAULT 0,
  left_out TEXT NOT NULL DEFAULT '',
  problem TEXT NOT NULL DEFAULT '',
  noted_at INTEGER NOT NULL DEFAULT 0,
  UNIQUE (root_id, path)
);
CREATE INDEX files_by_track ON files(track_id);
CREATE INDEX files_by_sound ON files(sound_print);
CREATE INDEX files_to_analyse ON files(id) WHERE analysis_version = 0;
CREATE INDEX files_by_reason ON files(left_out, id) WHERE left_out <> '';
ALTER TABLE tracks ADD COLUMN source TEXT NOT NULL DEFAULT 'demo';
ALTER TABLE tracks ADD COLUMN recording_id INTEGER;
ALTER TABLE tracks ADD COLUMN album_artist TEXT NOT NULL DEFAULT '';
ALTER TABLE tracks ADD COLUMN composer TEXT NOT NULL DEFAULT '';
ALTER TABLE tracks ADD COLUMN work TEXT NOT NULL DEFAULT '';
ALTER TABLE tracks ADD COLUMN movement INTEGER NOT NULL DEFAULT 0;
ALTER TABLE tracks ADD COLUMN disc INTEGER NOT NULL DEFAULT 0;
ALTER TABLE tracks ADD COLUMN number INTEGER NOT NULL DEFAULT 0;
ALTER TABLE tracks ADD COLUMN gain_db REAL;
ALTER TABLE tracks ADD COLUMN peak REAL;
ALTER TABLE tracks ADD COLUMN seconds REAL;
ALTER TABLE tracks ADD COLUMN kind TEXT NOT NULL DEFAULT 'music';
CREATE INDEX tracks_by_album ON tracks(album_id);
CREATE INDEX tracks_by_recording ON tracks(recording_id) WHERE recording_id IS NOT NULL;
ALTER TABLE albums ADD COLUMN folder BLOB;
ALTER TABLE albums ADD COLUMN is_cover_looked_for INTEGER NOT NULL DEFAULT 1;
CREATE INDEX albums_without_cover ON albums(id) WHERE is_cover_looked_for = 0;
CREATE INDEX tracks_by_seconds ON tracks(seconds) WHERE seconds IS NOT NULL;
CREATE TABLE styles (
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL,
  folded TEXT NOT NULL UNIQUE,
  tracks INTEGER NOT NULL DEFAULT 0
);
CREATE TABLE track_styles (
  track_id INTEGER NOT NULL REFERENCES tracks(id) ON DELETE CASCADE,
  style_id INTEGER NOT NULL REFERENCES styles(id) ON DELETE CASCADE,
  weight REAL NOT NULL,
  PRIMARY KEY (track_id, style_id)
) WITHOUT ROWID;
CREATE INDEX track_styles_by_style ON track_styles(style_id, track_id);
CREATE TABLE descriptors (
  track_id INTEGER PRIMARY KEY REFERENCES tracks(id) ON DELETE CASCADE,
  version INTEGER NOT NULL,
  numbers BLOB NOT NULL
);
CREATE TABLE plays (
  issue_id INTEGER PRIMARY KEY,
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  station_id INTEGER NOT NULL REFERENCES stations(id) ON DELETE CASCADE,
  track_id INTEGER NOT NULL REFERENCES tracks(id) ON DELETE CASCADE,
  started_at INTEGER NOT NULL,
  seconds REAL NOT NULL DEFAULT 0,
  outcome TEXT NOT NULL CHECK (outcome IN ('playing', 'ended', 'skipped', 'left'))
);
CREATE INDEX plays_by_station ON plays(station_id, started_at);
CREATE INDEX plays_by_account ON plays(account_id, started_at);
ALTER TABLE issued_tracks ADD COLUMN device_key_hash TEXT NOT NULL DEFAULT '';
ALTER TABLE issued_tracks ADD COLUMN terms TEXT NOT NULL DEFAULT '';
)sql";

// What requests with a key of their own were answered: the answer encrypted with that key.
constexpr const char *requestAnswers = R"sql(
CREATE TABLE request_answers (
  number INTEGER PRIMARY KEY AUTOINCREMENT,
  id TEXT NOT NULL UNIQUE,
  owner TEXT NOT NULL,
  content_hash TEXT NOT NULL,
  answer TEXT NOT NULL,
  answered_at INTEGER NOT NULL
);
CREATE INDEX request_answers_by_owner ON request_answers(owner, number);
CREATE INDEX request_answers_by_time ON request_answers(answered_at);
)sql";

// A file that went together with many others is kept until somebody says otherwise. Pictures beside the music are known
// by their stamps, as files are.
constexpr const char *goneFilesAndCovers = R"sql(
ALTER TABLE files ADD COLUMN is_kept INTEGER NOT NULL DEFAULT 0;
CREATE INDEX files_missing ON files(missing_since) WHERE missing_since IS NOT NULL;
CREATE TABLE cover_files (
  root_id INTEGER NOT NULL REFERENCES roots(id) ON DELETE CASCADE,
  path BLOB NOT NULL,
  size INTEGER NOT NULL,
  mtime_ns INTEGER NOT NULL,
  inode INTEGER NOT NULL,
  PRIMARY KEY (root_id, path)
) WITHOUT ROWID;
)sql";

// Who asks for access to an account is shown to the person who decides.
//
// What a playlist costs does not grow with what was heard: plays are counted as they come and go, and which
// advertisement an account has not had for the longest time is read from an index.
constexpr const char *askingRadios = R"sql(
ALTER TABLE sessions ADD COLUMN device_model TEXT NOT NULL DEFAULT '';
ALTER TABLE activation_codes ADD COLUMN device_model TEXT NOT NULL DEFAULT '';
ALTER TABLE activation_codes ADD COLUMN address TEXT NOT NULL DEFAULT '';
CREATE INDEX issued_ads_by_ad ON issued_ads(account_id, ad_id, id);
DROP INDEX issued_ads_by_account;
CREATE TABLE sign_ups (
  token_hash TEXT PRIMARY KEY,
  user_name TEXT NOT NULL,
  password_hash TEXT NOT NULL,
  birth_year INTEGER,
  gender TEXT NOT NULL,
  zip_code TEXT NOT NULL,
  country_code TEXT NOT NULL,
  email_opt_in INTEGER NOT NULL,
  session_hash TEXT NOT NULL,
  key_hash TEXT NOT NULL,
  device_id TEXT NOT NULL,
  expires_at INTEGER NOT NULL
) WITHOUT ROWID;
CREATE INDEX plays_by_time ON plays(started_at);
CREATE INDEX plays_under_way ON plays(account_id) WHERE outcome = 'playing';
CREATE TABLE play_counts (
  station_id INTEGER NOT NULL,
  track_id INTEGER NOT NULL,
  plays INTEGER NOT NULL,
  PRIMARY KEY (station_id, track_id)
) WITHOUT ROWID;
CREATE TABLE play_days (
  account_id INTEGER NOT NULL,
  station_id INTEGER NOT NULL,
  day INTEGER NOT NULL,
  plays INTEGER NOT NULL,
  PRIMARY KEY (account_id, station_id, day)
) WITHOUT ROWID;
INSERT INTO play_counts SELECT station_id, track_id, COUNT(*) FROM plays GROUP BY station_id, track_id;
INSERT INTO play_days SELECT account_id, station_id, started_at / 86400, COUNT(*) FROM plays
  GROUP BY account_id, station_id, started_at / 86400;
CREATE TRIGGER play_begun AFTER INSERT ON plays BEGIN
  INSERT INTO play_counts VALUES (NEW.station_id, NEW.track_id, 1)
    ON CONFLICT DO UPDATE SET plays = plays + 1;
  INSERT INTO play_days VALUES (NEW.account_id, NEW.station_id, NEW.started_at / 86400, 1)
    ON CONFLICT DO UPDATE SET plays = plays + 1;
END;
CREATE TRIGGER play_forgotten AFTER DELETE ON plays BEGIN
  UPDATE play_counts SET plays = plays - 1 WHERE station_id = OLD.station_id AND track_id = OLD.track_id;
  DELETE FROM play_counts WHERE station_id = OLD.station_id AND track_id = OLD.track_id AND plays = 0;
  UPDATE play_days SET plays = plays - 1
    WHERE account_id = OLD.account_id AND station_id = OLD.station_id AND day = OLD.started_at / 86400;
  DELETE FROM play_days
    WHERE account_id = OLD.account_id AND station_id = OLD.station_id AND day = OLD.started_at / 86400 AND plays = 0;
END;
)sql";

// What its owner calls a radio.
constexpr const char *namedRadios = "ALTER TABLE devices ADD COLUMN name TEXT NOT NULL DEFAULT '';";

// Who was invited may sign up. A new mail address counts when the link of a mail to it is opened.
constexpr const char *invitations = R"sql(
CREATE TABLE invitations (
  token_hash TEXT PRIMARY KEY,
  guest TEXT NOT NULL,
  expires_at INTEGER NOT NULL
) WITHOUT ROWID;
ALTER TABLE sign_ups ADD COLUMN invitation_hash TEXT NOT NULL DEFAULT '';
ALTER TABLE resets ADD COLUMN value TEXT NOT NULL DEFAULT '';
)sql";

// Tokens of tracks, ads and music carry what they stand for. A station remembers the last tracks that it handed out, as
// a JSON array of ids, newest first, and how the plays of the last 512 ended: sixteen in a row, as "[track,begin,how],"
// (1 ended, 2 skipped, 0 neither), in the slot that the number of their block gives. The plays of before get the
// numbers that lead up to the next one.
//
// What was played and what requests were answered grows with time: a day comes first in the keys, so that a day that is
// over is one range at the front of the table (store/days.h).
constexpr const char *sealedTokens = R"sql(
ALTER TABLE stations ADD COLUMN recent TEXT NOT NULL DEFAULT '[]';
UPDATE stations SET recent = (SELECT json_group_array(track_id) FROM (
  SELECT track_id FROM issued_tracks WHERE station_id = stations.id ORDER BY id DESC LIMIT 60));
UPDATE stations SET lists_issued = lists_issued + 128;
CREATE TABLE day_plays (
  day INTEGER NOT NULL,
  account_id INTEGER NOT NULL,
  station_id INTEGER NOT NULL,
  number INTEGER NOT NULL,
  track_id INTEGER NOT NULL,
  started_at INTEGER NOT NULL,
  seconds INTEGER NOT NULL,
  outcome TEXT NOT NULL CHECK (outcome IN ('ended', 'skipped', 'left')),
  PRIMARY KEY (day, account_id, station_id, number)
) WITHOUT ROWID;
INSERT INTO day_plays
  SELECT started_at / 86400, account_id, station_id, next - back, track_id, started_at, CAST(seconds AS INTEGER),
    iif(outcome = 'playing', 'left', outcome)
  FROM (
    SELECT p.*, 4 * (s.lists_issued + 1) AS next,
      ROW_NUMBER() OVER (PARTITION BY p.station_id ORDER BY p.started_at DESC, p.issue_id DESC) AS back
    FROM plays p JOIN stations s ON s.id = p.station_id AND s.account_id = p.account_id)
  WHERE back <= 512;
CREATE TABLE remembered_plays (
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  station_id INTEGER NOT NULL REFERENCES stations(id) ON DELETE CASCADE,
  slot INTEGER NOT NULL,
  block INTEGER NOT NULL,
  plays TEXT NOT NULL,
  PRIMARY KEY (account_id, station_id, slot)
) WITHOUT ROWID;
CREATE INDEX remembered_plays_by_station ON remembered_plays(station_id);
INSERT INTO remembered_plays
  SELECT account_id, station_id, number / 16 % 32, number / 16,
    group_concat('[' || track_id || ',' || started_at || ',' ||
      CASE outcome WHEN 'ended' THEN 1 WHEN 'skipped' THEN 2 ELSE 0 END || '],', '')
  FROM (SELECT *, MAX(number) OVER (PARTITION BY station_id) AS newest FROM day_plays ORDER BY station_id, number)
  WHERE number / 16 > newest / 16 - 32
  GROUP BY account_id, station_id, number / 16;
DROP TABLE plays;
DROP TABLE play_counts;
DROP TABLE play_days;
ALTER TABLE day_plays RENAME TO plays;
CREATE TABLE plays_under_way (
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  radio TEXT NOT NULL,
  station_id INTEGER NOT NULL,
  number INTEGER NOT NULL,
  track_id INTEGER NOT NULL,
  started_at INTEGER NOT NULL,
  is_over INTEGER NOT NULL,
  PRIMARY KEY (account_id, radio)
) WITHOUT ROWID;
CREATE TABLE day_answers (
  day INTEGER NOT NULL,
  owner TEXT NOT NULL,
  id TEXT NOT NULL,
  number INTEGER NOT NULL,
  content_hash TEXT NOT NULL,
  answer TEXT NOT NULL,
  answered_at INTEGER NOT NULL,
  PRIMARY KEY (day, owner, id)
) WITHOUT ROWID;
INSERT INTO day_answers SELECT answered_at / 86400, owner, id, number, content_hash, answer, answered_at
  FROM request_answers;
DROP TABLE request_answers;
ALTER TABLE day_answers RENAME TO request_answers;
CREATE INDEX sleeps_by_track ON sleeps(track_id);
DROP TABLE music_tokens;
DROP TABLE issued_tracks;
DROP TABLE issued_ads;
DROP TABLE track_events;
)sql";

// Mails that wait to be sent.
constexpr const char *waitingMails = R"sql(
CREATE TABLE mails (
  id TEXT PRIMARY KEY,
  recipient_hash TEXT NOT NULL,
  content TEXT NOT NULL,
  due_at INTEGER NOT NULL,
  failures INTEGER NOT NULL,
  taken_until INTEGER NOT NULL
) WITHOUT ROWID;
CREATE INDEX mails_by_time ON mails(due_at);
)sql";

// The ids of tracks, artists, albums and ads are never given again: accounts, which may stand in another database, and
// sealed tokens refer to them.
// A seed stands with its account, as everything of an account does; so does a thumb.
constexpr const char *permanentIds = R"sql(
CREATE TABLE new_artists (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  public_id TEXT NOT NULL UNIQUE,
  name TEXT NOT NULL,
  folded TEXT NOT NULL
);
INSERT INTO new_artists (id, public_id, name, folded) SELECT id, public_id, name, folded FROM artists;
DROP TABLE artists;
ALTER TABLE new_artists RENAME TO artists;
CREATE INDEX artists_by_folded ON artists(folded);
CREATE TABLE new_albums (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  public_id TEXT NOT NULL UNIQUE,
  artist_id INTEGER NOT NULL REFERENCES artists(id),
  title TEXT NOT NULL,
  year INTEGER NOT NULL,
  folder BLOB,
  is_cover_looked_for INTEGER NOT NULL DEFAULT 1
);
INSERT INTO new_albums SELECT id, public_id, artist_id, title, year, folder, is_cover_looked_for FROM albums;
DROP TABLE albums;
ALTER TABLE new_albums RENAME TO albums;
CREATE INDEX albums_by_artist ON albums(artist_id, title);
CREATE INDEX albums_without_cover ON albums(id) WHERE is_cover_looked_for = 0;
CREATE TABLE new_ads (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  public_id TEXT NOT NULL UNIQUE,
  title TEXT NOT NULL,
  line2 TEXT NOT NULL,
  duration INTEGER NOT NULL,
  audio_path TEXT NOT NULL,
  audio_type TEXT NOT NULL,
  picture_path TEXT NOT NULL,
  is_playable INTEGER NOT NULL
);
INSERT INTO new_ads SELECT id, public_id, title, line2, duration, audio_path, audio_type, picture_path, is_playable
  FROM ads;
DROP TABLE ads;
ALTER TABLE new_ads RENAME TO ads;
CREATE TABLE new_tracks (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  public_id TEXT NOT NULL UNIQUE,
  artist_id INTEGER NOT NULL REFERENCES artists(id),
  album_id INTEGER NOT NULL REFERENCES albums(id),
  song TEXT NOT NULL,
  folded TEXT NOT NULL,
  style TEXT NOT NULL,
  mood TEXT NOT NULL,
  tempo INTEGER NOT NULL,
  year INTEGER NOT NULL,
  duration INTEGER NOT NULL,
  audio_path TEXT NOT NULL,
  audio_type TEXT NOT NULL,
  bitrate INTEGER NOT NULL,
  picture_path TEXT NOT NULL,
  is_explicit INTEGER NOT NULL DEFAULT 0,
  is_playable INTEGER NOT NULL,
  source TEXT NOT NULL DEFAULT 'demo',
  recording_id INTEGER,
  album_artist TEXT NOT NULL DEFAULT '',
  composer TEXT NOT NULL DEFAULT '',
  work TEXT NOT NULL DEFAULT '',
  movement INTEGER NOT NULL DEFAULT 0,
  disc INTEGER NOT NULL DEFAULT 0,
  number INTEGER NOT NULL DEFAULT 0,
  gain_db REAL,
  peak REAL,
  seconds REAL,
  kind TEXT NOT NULL DEFAULT 'music'
);
INSERT INTO new_tracks SELECT id, public_id, artist_id, album_id, song, folded, style, mood, tempo, year, duration,
  audio_path, audio_type, bitrate, picture_path, is_explicit, is_playable, source, recording_id, album_artist, composer,
  work, movement, disc, number, gain_db, peak, seconds, kind FROM tracks;
DROP TABLE tracks;
ALTER TABLE new_tracks RENAME TO tracks;
CREATE INDEX tracks_by_folded ON tracks(folded);
CREATE INDEX tracks_by_style ON tracks(is_playable, style, id);
CREATE INDEX tracks_by_artist ON tracks(artist_id);
CREATE INDEX tracks_by_album ON tracks(album_id);
CREATE INDEX tracks_by_recording ON tracks(recording_id) WHERE recording_id IS NOT NULL;
CREATE INDEX tracks_by_seconds ON tracks(seconds) WHERE seconds IS NOT NULL;
CREATE TABLE new_seeds (
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  station_id INTEGER NOT NULL REFERENCES stations(id) ON DELETE CASCADE,
  kind TEXT NOT NULL CHECK (kind IN ('artist', 'track', 'style')),
  target TEXT NOT NULL,
  PRIMARY KEY (account_id, station_id, kind, target)
) WITHOUT ROWID;
INSERT INTO new_seeds SELECT s.account_id, e.station_id, e.kind, e.target
  FROM seeds e JOIN stations s ON s.id = e.station_id;
DROP TABLE seeds;
ALTER TABLE new_seeds RENAME TO seeds;
CREATE INDEX seeds_by_station ON seeds(station_id);
CREATE TABLE new_feedback (
  account_id INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
  station_id INTEGER NOT NULL REFERENCES stations(id) ON DELETE CASCADE,
  track_id INTEGER NOT NULL REFERENCES tracks(id) ON DELETE CASCADE,
  is_positive INTEGER NOT NULL,
  given_at INTEGER NOT NULL,
  PRIMARY KEY (account_id, station_id, track_id)
) WITHOUT ROWID;
INSERT INTO new_feedback SELECT account_id, station_id, track_id, is_positive, given_at FROM feedback;
DROP TABLE feedback;
ALTER TABLE new_feedback RENAME TO feedback;
CREATE INDEX feedback_by_station ON feedback(station_id);
CREATE INDEX feedback_by_track ON feedback(track_id);
)sql";

struct Step {
    const char *script;
    bool replacesTables = false; // others refer to those, and must not mind that they are away for a moment
};

// Step n brings a file from version n to n + 1. A step that has been released is never changed.
constexpr std::array steps = {
    Step{accountsAndDevices}, Step{catalogue},          Step{stations},          Step{devicesByKey}, Step{ownMusic},
    Step{requestAnswers},     Step{goneFilesAndCovers}, Step{askingRadios},      Step{namedRadios},  Step{invitations},
    Step{sealedTokens},       Step{waitingMails},       Step{permanentIds, true}};

} // namespace

int newestSchemaVersion()
{
    return static_cast<int>(steps.size());
}

int64_t schemaVersion(Database &db)
{
    Statement statement = db.prepare("PRAGMA user_version");
    statement.step();
    return statement.integer(0);
}

void migrate(Database &db, int upTo)
{
    int64_t version = schemaVersion(db);
    if (version < 0 || version > newestSchemaVersion())
        throw StoreError("the database has version " + std::to_string(version) +
                         ", this program knows versions up to " + std::to_string(newestSchemaVersion()) +
                         "; use the newer velmora-server that wrote it");
    for (; version < upTo; ++version) {
        const Step &step = steps[static_cast<size_t>(version)];
        if (step.replacesTables) // which is ignored inside a transaction
            db.execute("PRAGMA foreign_keys = OFF");
        Transaction change(db);
        db.execute(step.script);
        db.execute("PRAGMA user_version = " + std::to_string(version + 1));
        change.commit();
        db.execute("PRAGMA foreign_keys = ON");
    }
}

} // namespace velmora::server
