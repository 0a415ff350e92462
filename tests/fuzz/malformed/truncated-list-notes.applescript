tell application "Notes"
    tell account 1
        set out to ""
        repeat with n in notes
            if cnt ≥