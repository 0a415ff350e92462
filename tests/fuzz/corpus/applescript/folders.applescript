tell application "Notes"
    tell account 1
        set out to ""
        repeat with f in folders
            set out to out & (name of f) & "<¶>"
        end repeat
        return out
    end tell
end tell