tell application "Notes"
    make new note with properties {body:"x"}
    repeat with n in notes of folder "Notizen" whose name contains "x" or body contains "y"
        delete n
        move n to default folder of account 1
    end repeat
end tell
