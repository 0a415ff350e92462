"""What a walk does with playlists; the service is a stand-in."""

from walk_actions import action, text, within

MOST_PLAYLISTS = 5


def into_name(walk):
    """Clicks into the field in which a new playlist is named."""
    def find():
        card = walk.desk.card("Spotify")
        return next((node for node in card.find("text") if node.has("showing")), None) if card else None
    walk.desk.click(find)
    walk.desk.desktop.key("End")


@action(4, when=lambda model: not model.isNaming)
def name_playlist(walk, rng):
    """Opens the field, in which the former name is selected."""
    words = text(rng, 2)
    walk.detail(repr(words))
    walk.desk.click(within(walk, "Spotify", None, "Neue Playlist"))
    walk.model.isNaming = True
    walk.agree()
    walk.desk.type(words)
    walk.model.playlistName = words


@action(3, when=lambda model: model.isNaming and len(model.playlistName) < 40)
def type_name(walk, rng):
    words = text(rng, 2)
    walk.detail(repr(words))
    into_name(walk)
    walk.desk.type(words)
    walk.model.playlistName += words


@action(3, when=lambda model: model.isNaming)
def close_name(walk, rng):
    if rng.random() < 0.5:
        walk.desk.click(within(walk, "Spotify", None, "Abbrechen"))
    else:
        into_name(walk)
        walk.desk.desktop.key("Escape")
    walk.model.isNaming = False


@action(4, when=lambda model: model.isNaming and model.playlistName.strip() and len(model.playlists) < MOST_PLAYLISTS)
def create_playlist(walk, rng):
    """A second Return makes no second one."""
    into_name(walk)
    walk.desk.desktop.key(*["Return"] * rng.randint(1, 2))
    walk.model.create_playlist()


@action(5, when=lambda model: not model.isNaming and any(name == "Morgenkaffee" and count > 1
                                                         for name, count in model.playlists))
def remove_track(walk, rng):
    """Of the list that is the user's own, and back to the others."""
    desk = walk.desk
    playlist = next(playlist for playlist in walk.model.playlists if playlist[0] == "Morgenkaffee")
    name, count = playlist

    def tracks():
        found = desk.card("Spotify").first("list", name)
        return [row for row in found.children if row.has("visible")] if found else []

    def bin_of_a_track():
        rows = tracks()
        return rows[0].first(name="Entfernen: .*") if rows else None
    desk.click(within(walk, "Spotify", None, f"{name}, {count} Titel"))
    desk.wait(bin_of_a_track, "the tracks do not come")
    before = desk.music_total(name)
    desk.click(bin_of_a_track)
    desk.wait(lambda: desk.music_total(name) == before - 1, "the track is not removed")
    walk.model.remove_track(playlist)
    desk.click(within(walk, "Spotify", None, "Zurück zu den Playlists"))
