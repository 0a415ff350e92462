tell application "Notes"
    tell account 1
        make new note with properties {name:"a<b", body:"<div><b>a&lt;b</b></div>x &amp; y<br>z"}
    end tell
    repeat with n in notes
        set body of n to "<div><b>\"c\\</b></div>"
        return body of note id (id of n)
    end repeat
end tell
