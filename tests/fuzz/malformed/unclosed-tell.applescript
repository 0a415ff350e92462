tell application "Notes"
    tell account 1
        return 1
    end tell