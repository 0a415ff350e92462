tell application "Notes"
    return notes of folder "a\"
end tell