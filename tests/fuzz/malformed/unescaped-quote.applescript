tell application "Notes"
    return body of note id "a"b"
end tell