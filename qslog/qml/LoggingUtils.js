// SPDX-License-Identifier: LicenseRef-Proprietary
.pragma library
.import QsLog 1.0 as QsLog

// The last component of a path, without its last extension.
function basename(path) {
    var components = path.split(/[\/\\]/);
    return components[components.length - 1].replace(/\.[^.]*$/, "");
}

// The place of a function on the stack: 0 is callingLine itself, 1 (the default) its caller; a depth
// beyond the outermost function gives that function. All members of the record are texts: method,
// url, line, relativeUrl, and baseUrl, the name of the file's logger.
function callingLine(i) {
    var depth = i === undefined ? 1 : i;
    var stack = [];
    try {
        undeclaredOnPurpose.property++;
    } catch (error) {
        stack = error.stack.split("\n");
    }
    // Each line reads "function@url:line".
    var frame = (stack[Math.min(depth, stack.length - 1)] || "")
        .replace("file:/", "")
        .replace("qrc:/", "")
        .replace(/\/\/([A-Z]):/, "\\/$1")
        .replace(/\/\/([a-z]):/, "\\/$1");
    var parts = frame.split("@");
    var place = (parts[1] || "").split(":");
    var url = place[0].replace("users", "Users");
    return {
        method: parts[0],
        url: url,
        line: place[1] || "",
        relativeUrl: QsLog.QsLogHelpers.qml_RelativeSrcDir(url),
        baseUrl: basename(url)
    };
}
