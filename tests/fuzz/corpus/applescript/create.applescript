tell application "Notes"
    tell account 1
        make new note with properties {name:"a<b", body:"<div><b>a&lt;b</b></div>x &amp; y<br>z"}
    end tell
    set body of note 1 to "<div><b>\"c\\</b></div>"
    return body of note id (id of note 1)
end tell