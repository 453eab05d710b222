// SPDX-License-Identifier: LicenseRef-Proprietary
.pragma library
.import QsLog 1.0 as QsLog
.import "LoggingUtils.js" as LoggingUtils

// A depth counts the functions from callingLine up to the caller that the line names. So each
// function here calls log() directly, and as a statement: a returned call may leave no stack frame.

// Writes one line through the logger of that tag or, without a tag, of the calling file.
function log(level, message, tag, depth) {
    var loc = LoggingUtils.callingLine(depth || 2);
    QsLog.QsLogHelpers.qml_QsLog(tag || loc.baseUrl, level, loc.method, loc.url, loc.line, message);
}

function trace(message) {
    log(QsLog.QsLogHelpers.Trace, message, undefined, 3);
}

function debug(message) {
    log(QsLog.QsLogHelpers.Debug, message, undefined, 3);
}

function info(message) {
    log(QsLog.QsLogHelpers.Info, message, undefined, 3);
}

function warn(message) {
    log(QsLog.QsLogHelpers.Warn, message, undefined, 3);
}

function error(message) {
    log(QsLog.QsLogHelpers.Error, message, undefined, 3);
}

function fatal(message) {
    log(QsLog.QsLogHelpers.Fatal, message, undefined, 3);
}

// Written at every threshold of the logger.
function off(message) {
    log(QsLog.QsLogHelpers.Off, message, undefined, 3);
}

// Logs a failed assertion and returns its place and text. Does not stop the program. Meant for
// checking functions: the place is the caller of the function that calls assert.
function assert(message) {
    var text = message === undefined ? "ASSERT failed" : "ASSERT " + message;
    log(QsLog.QsLogHelpers.Fatal, text, undefined, 4);
    var loc = LoggingUtils.callingLine(3);
    return loc.relativeUrl + ":" + loc.line + " [" + loc.method + "] " + text;
}

// The name of the calling file's logger.
function tag() {
    var loc = LoggingUtils.callingLine(2);
    return loc.baseUrl;
}
