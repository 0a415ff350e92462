#!/usr/bin/osascript -l JavaScript
console.log("x");