tell application "Notes"
    tell account 1
        set out to ""
        set cnt to 0
        repeat with n in notes of folder "Notizen"
            set out to out & (id of n) & "<§>" & (name of n) & "<¶>"
            set cnt to cnt + 1
            if cnt ≥ 80 then exit repeat
        end repeat
        return out
    end tell
end tell