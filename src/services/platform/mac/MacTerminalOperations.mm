#include "MacTerminalOperations.h"

#include "ServiceError.h"
#include "TerminalLaunchError.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

using namespace Qt::StringLiterals;

namespace
{
void releaseObject(id object)
{
#if !__has_feature(objc_arc)
    [object release];
#else
    (void)object;
#endif
}
} // namespace

std::optional<QString> MacApplicationLocator::applicationLocation(const QString& bundleIdentifier) const
{
    @autoreleasepool {
        NSURL* url =
            [[NSWorkspace sharedWorkspace] URLForApplicationWithBundleIdentifier:bundleIdentifier.toNSString()];
        if (url == nil || url.path == nil)
            return std::nullopt;
        return QString::fromNSString(url.path);
    }
}

std::optional<QVariantMap> MacApplicationLocator::applicationInformation(const QString& location) const
{
    @autoreleasepool {
        NSURL* url = [NSURL fileURLWithPath:location.toNSString() isDirectory:YES];
        NSBundle* bundle = [[NSBundle alloc] initWithURL:url];
        if (bundle == nil)
            return std::nullopt;
        QVariantMap information;
        for (NSString* key in @[ @"CFBundleDisplayName", @"CFBundleName" ]) {
            id value = [bundle objectForInfoDictionaryKey:key];
            // Only strings can name an app; anything else is left out, as if the key were missing.
            if ([value isKindOfClass:[NSString class]]) {
                NSString* name = value;
                information.insert(QString::fromNSString(key), QString::fromNSString(name));
            }
        }
        releaseObject(bundle);
        return information;
    }
}

void macRunAppleScript(const QString& source)
{
    bool made = false;
    QString failure;
    @autoreleasepool {
        NSAppleScript* script = [[NSAppleScript alloc] initWithSource:source.toNSString()];
        if (script != nil) {
            made = true;
            NSDictionary* errorInfo = nil;
            [script executeAndReturnError:&errorInfo];
            // The dictionary's description carries NSAppleScriptErrorNumber, by which a refusal is recognised.
            if (errorInfo != nil)
                failure = QString::fromNSString([errorInfo description]);
            releaseObject(script);
        }
    }
    // Thrown outside the pool: an exception must not unwind through @autoreleasepool.
    if (!made)
        throw TerminalLaunchError::appleScriptFailed(u"Script initialisatie mislukt."_s);
    if (!failure.isNull())
        throw TerminalLaunchError::appleScriptFailed(failure);
}

void macOpenApplication(const QString& bundleIdentifier)
{
    QString startError;
    int status = 0;
    @autoreleasepool {
        NSTask* task = [[NSTask alloc] init];
        task.executableURL = [NSURL fileURLWithPath:@"/usr/bin/open"];
        task.arguments = @[ @"-b", bundleIdentifier.toNSString() ];
        NSError* error = nil;
        if ([task launchAndReturnError:&error]) {
            [task waitUntilExit];
            status = task.terminationStatus;
        } else {
            startError = error != nil ? QString::fromNSString(error.localizedDescription)
                                      : u"/usr/bin/open kon niet worden gestart."_s;
        }
        releaseObject(task);
    }
    if (!startError.isNull())
        throw PlatformError(startError);
    if (status != 0)
        throw TerminalLaunchError::launchFailed(bundleIdentifier);
}

void macSetClipboardText(const QString& text)
{
    @autoreleasepool {
        NSPasteboard* pasteboard = [NSPasteboard generalPasteboard];
        [pasteboard clearContents];
        [pasteboard setString:text.toNSString() forType:NSPasteboardTypeString];
    }
}

bool macOpenUri(const QUrl& uri)
{
    @autoreleasepool {
        NSURL* url = uri.toNSURL();
        return url != nil && [[NSWorkspace sharedWorkspace] openURL:url];
    }
}
