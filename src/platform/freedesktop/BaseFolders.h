#pragma once

namespace randblatt {

/// Takes relative paths out of the environment variables that name the user's folders, as if they were not
/// there (XDG Base Directory Specification); a program started in another folder would find other data. To be
/// called before anybody asks for those folders.
void ignoreRelativeBaseFolders();

} // namespace randblatt
