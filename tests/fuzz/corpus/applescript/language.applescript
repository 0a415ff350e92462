set x to 1 + 2 & "a" & (3 ≥ 2 or 1 ≥ 2)
tell application "notes"
    tell folder "Notizen" of account 1
        repeat with n in notes
            if x contains name of container of n then return x
            exit repeat
        end repeat
    end tell
end tell
return x
