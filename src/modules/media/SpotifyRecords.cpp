#include "modules/media/SpotifyRecords.h"

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr auto likedID = "__liked__"_L1;

} // namespace

SpotifyPlaylist SpotifyPlaylist::liked()
{
    SpotifyPlaylist playlist;
    playlist.id = likedID;
    playlist.name = u"Lieblingssongs"_s;
    return playlist;
}

bool SpotifyPlaylist::isLiked() const
{
    return id == likedID;
}

} // namespace randblatt
