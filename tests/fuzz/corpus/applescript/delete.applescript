tell application "Notes"
    make new note at folder "Notizen" with properties {body:"x"}
    delete (every note whose name contains "x")
    count notes
end tell