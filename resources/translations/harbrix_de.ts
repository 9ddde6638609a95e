<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="zh_CN">
<context>
    <name>texts</name>
    <message>
        <source>browser.download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>browser.downloadEllipsis</source>
        <translation>Herunterladen...</translation>
    </message>
    <message>
        <source>browser.empty.hint</source>
        <translation>Binden Sie im Hauptfenster ein NAS ein, um Dateien zu durchsuchen.</translation>
    </message>
    <message>
        <source>browser.empty.title</source>
        <translation>Kein NAS eingebunden</translation>
    </message>
    <message>
        <source>browser.fileExists</source>
        <translation>Datei existiert bereits</translation>
    </message>
    <message>
        <source>browser.fileExistsMessage</source>
        <translation>„%@“ ist hier bereits vorhanden.</translation>
    </message>
    <message>
        <source>browser.open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>browser.openInFinder</source>
        <translation>Im Dateimanager öffnen</translation>
    </message>
    <message>
        <source>browser.overwrite</source>
        <translation>Überschreiben</translation>
    </message>
    <message>
        <source>browser.quickLook</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>browser.rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>browser.showInFinder</source>
        <translation>Im Dateimanager zeigen</translation>
    </message>
    <message>
        <source>browser.skip</source>
        <translation>Überspringen</translation>
    </message>
    <message>
        <source>common.add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>common.cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>common.close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>common.delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>common.save</source>
        <translation>Sichern</translation>
    </message>
    <message>
        <source>filesystem.offline.empty</source>
        <translation>Das NAS ist getrennt. Aus diesem Ordner sind keine Dateien zwischengespeichert.</translation>
    </message>
    <message>
        <source>language.system</source>
        <translation>Wie das System</translation>
    </message>
    <message>
        <source>main.about</source>
        <translation>Über Harbrix</translation>
    </message>
    <message>
        <source>main.addNAS</source>
        <translation>NAS hinzufügen</translation>
    </message>
    <message>
        <source>main.addNASTooltip</source>
        <translation>Eine neue NAS-Konfiguration anlegen</translation>
    </message>
    <message>
        <source>main.emptyDetailHint</source>
        <translation>Wählen Sie links eine Konfiguration oder legen Sie mit der Taste oben ein neues NAS an.</translation>
    </message>
    <message>
        <source>main.mountedFoldersTitle</source>
        <translation>Eingebundene Ordner</translation>
    </message>
    <message>
        <source>main.nasList</source>
        <translation>NAS-Liste</translation>
    </message>
    <message>
        <source>main.noConfigs</source>
        <translation>Noch kein NAS eingerichtet</translation>
    </message>
    <message>
        <source>main.openInFinder</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>main.openSettings</source>
        <translation>Einstellungen öffnen</translation>
    </message>
    <message>
        <source>main.selectOrAddNAS</source>
        <translation>NAS auswählen oder hinzufügen</translation>
    </message>
    <message>
        <source>menubar.about</source>
        <translation>Über Harbrix</translation>
    </message>
    <message>
        <source>menubar.browseFiles</source>
        <translation>  Dateien durchsuchen...</translation>
    </message>
    <message>
        <source>menubar.checkForUpdates</source>
        <translation>Nach Updates suchen...</translation>
    </message>
    <message>
        <source>menubar.icon.accessibility</source>
        <translation>Harbrix-Status</translation>
    </message>
    <message>
        <source>menubar.mountAll</source>
        <translation>Jetzt alle einbinden</translation>
    </message>
    <message>
        <source>menubar.noConfigs</source>
        <translation>Noch kein NAS eingerichtet</translation>
    </message>
    <message>
        <source>menubar.openMainWindow</source>
        <translation>Hauptfenster öffnen</translation>
    </message>
    <message>
        <source>menubar.openSettings</source>
        <translation>Einstellungen...</translation>
    </message>
    <message>
        <source>menubar.quit</source>
        <translation>Harbrix beenden</translation>
    </message>
    <message>
        <source>menubar.recentFiles</source>
        <translation>Zuletzt benutzt</translation>
    </message>
    <message>
        <source>menubar.unmountAll</source>
        <translation>Jetzt alle trennen</translation>
    </message>
    <message>
        <source>nas.address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>nas.addressPlaceholder</source>
        <translation>z. B. 192.168.1.100</translation>
    </message>
    <message>
        <source>nas.auth</source>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>nas.authMethod</source>
        <translation>Anmeldeart</translation>
    </message>
    <message>
        <source>nas.autoMount</source>
        <translation>Automatisch einbinden</translation>
    </message>
    <message>
        <source>nas.basicInfo</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>nas.connectionFailed</source>
        <translation>Verbindung fehlgeschlagen: %@</translation>
    </message>
    <message>
        <source>nas.connectionSuccess</source>
        <translation>Verbunden (Antwortzeit %@ ms)</translation>
    </message>
    <message>
        <source>nas.customMountPoint</source>
        <translation>Eigener Einhängepunkt</translation>
    </message>
    <message>
        <source>nas.mount</source>
        <translation>Einbinden</translation>
    </message>
    <message>
        <source>nas.mountError</source>
        <translation>Problem beim Einbinden</translation>
    </message>
    <message>
        <source>nas.mountOptions</source>
        <translation>Optionen zum Einbinden</translation>
    </message>
    <message>
        <source>nas.mountPointExample1</source>
        <translation>Beispiel: ~/HarbrixVolumes/MyNAS (empfohlen, wird angelegt)</translation>
    </message>
    <message>
        <source>nas.mountPointExample2</source>
        <translation>Beispiel: /Volumes/MyNAS (der Ordner muss existieren)</translation>
    </message>
    <message>
        <source>nas.mountPointHelp</source>
        <translation>Wo die Freigabe erscheint. Leer: ~/HarbrixVolumes/&lt;Name&gt;. Ordner unter /Volumes/ müssen von Hand angelegt werden.</translation>
    </message>
    <message>
        <source>nas.mountPointPlaceholder</source>
        <translation>Leer lassen für den Standard</translation>
    </message>
    <message>
        <source>nas.mounting</source>
        <translation>Wird eingebunden...</translation>
    </message>
    <message>
        <source>nas.name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>nas.namePlaceholder</source>
        <translation>z. B. NAS zu Hause</translation>
    </message>
    <message>
        <source>nas.networkBinding</source>
        <translation>Netzwerkbindung</translation>
    </message>
    <message>
        <source>nas.networkBinding.currentIP</source>
        <translation>Aktuelles Netzwerk: %@</translation>
    </message>
    <message>
        <source>nas.networkBinding.hint</source>
        <translation>Dieses NAS wird nur in passenden Netzwerken automatisch eingebunden. Von Hand geht es immer.</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange</source>
        <translation>IP-Bereich (CIDR)</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange.placeholder</source>
        <translation>z. B. 192.168.3.0/24</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.allNetworks</source>
        <translation>Alle Netzwerke</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentIP</source>
        <translation>Aktuelle IP</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentNetwork</source>
        <translation>Aktuelles Netzwerk</translation>
    </message>
    <message>
        <source>nas.networkBinding.ssid.add</source>
        <translation>WLAN-Namen hinzufügen</translation>
    </message>
    <message>
        <source>nas.networkBinding.strategy</source>
        <translation>Binden an</translation>
    </message>
    <message>
        <source>nas.networkMismatch.confirm</source>
        <translation>Trotzdem verbinden</translation>
    </message>
    <message>
        <source>nas.networkMismatch.message</source>
        <translation>Das NAS ist nicht an dieses Netzwerk gebunden; die Verbindung schlägt womöglich fehl. Trotzdem versuchen?</translation>
    </message>
    <message>
        <source>nas.networkMismatch.title</source>
        <translation>Netzwerk passt nicht</translation>
    </message>
    <message>
        <source>nas.openInFinder</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>nas.password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>nas.passwordPlaceholder</source>
        <translation>Passwort zur Anmeldung</translation>
    </message>
    <message>
        <source>nas.protocol</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>nas.readOnly</source>
        <translation>Nur lesen</translation>
    </message>
    <message>
        <source>nas.sharePath</source>
        <translation>Freigabepfad</translation>
    </message>
    <message>
        <source>nas.sharePathPlaceholder</source>
        <translation>z. B. /shared/media</translation>
    </message>
    <message>
        <source>nas.smbVersion</source>
        <translation>SMB-Version</translation>
    </message>
    <message>
        <source>nas.testConnection</source>
        <translation>Verbindung testen</translation>
    </message>
    <message>
        <source>nas.testingConnection</source>
        <translation>Verbindung wird getestet...</translation>
    </message>
    <message>
        <source>nas.unmount</source>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>nas.username</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>nas.usernamePlaceholder</source>
        <translation>Name zur Anmeldung</translation>
    </message>
    <message>
        <source>network.status.allMismatch</source>
        <translation>Netzwerk passt nicht</translation>
    </message>
    <message>
        <source>network.status.ipMismatch</source>
        <translation>IP passt nicht</translation>
    </message>
    <message>
        <source>network.status.matched</source>
        <translation>Netzwerk passt</translation>
    </message>
    <message>
        <source>network.status.ssidMismatch</source>
        <translation>SSID passt nicht</translation>
    </message>
    <message>
        <source>nfs.auth</source>
        <translation>NFS-Anmeldung</translation>
    </message>
    <message>
        <source>nfs.error.emptySharePath</source>
        <translation>Der NFS-Exportpfad darf nicht leer sein</translation>
    </message>
    <message>
        <source>nfs.error.invalidArgument</source>
        <translation>mount_nfs hat ein falsches Argument bekommen. Prüfen Sie Adresse und Exportpfad. Nur NFSv4 wird unterstützt.</translation>
    </message>
    <message>
        <source>nfs.error.sudoRequired</source>
        <translation>NFS einzubinden erfordert root. Erlauben Sie mount_nfs in sudoers ohne Passwort, oder binden Sie von Hand ein und nutzen Sie einen eigenen Einhängepunkt.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.detail</source>
        <translation>Feste Optionen: vers=4 (NFSv4), tcp (TCP-Transport), noresvport (unprivilegierter Port); bei „Nur lesen“ zusätzlich ro.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.title</source>
        <translation>NFSv4-Optionen</translation>
    </message>
    <message>
        <source>nfs.noAuthNote</source>
        <translation>NFS braucht weder Benutzername noch Passwort. Den Zugriff regeln die Exporte des NFS-Servers.</translation>
    </message>
    <message>
        <source>nfs.sharePath</source>
        <translation>NFS-Exportpfad</translation>
    </message>
    <message>
        <source>nfs.sharePathPlaceholder</source>
        <translation>z. B. / oder /volume1/shared</translation>
    </message>
    <message>
        <source>nfs.versionNote</source>
        <translation>Nur NFSv4 wird unterstützt (über TCP, von einem unprivilegierten Port).</translation>
    </message>
    <message>
        <source>notification.action.retry</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>notification.event.cacheCleanup</source>
        <translation>Cache-Bereinigung</translation>
    </message>
    <message>
        <source>notification.event.mountFailure</source>
        <translation>Einbinden fehlgeschlagen</translation>
    </message>
    <message>
        <source>notification.event.mountSuccess</source>
        <translation>Eingebunden</translation>
    </message>
    <message>
        <source>notification.event.networkChange</source>
        <translation>Netzwerkwechsel</translation>
    </message>
    <message>
        <source>notification.event.transferComplete</source>
        <translation>Übertragung beendet</translation>
    </message>
    <message>
        <source>notification.event.transferFailed</source>
        <translation>Übertragung fehlgeschlagen</translation>
    </message>
    <message>
        <source>notification.event.unmount</source>
        <translation>Getrennt</translation>
    </message>
    <message>
        <source>notification.mount.failure.body</source>
        <translation>%1$@: %2$@</translation>
    </message>
    <message>
        <source>notification.mount.failure.title</source>
        <translation>NAS-Verbindung fehlgeschlagen</translation>
    </message>
    <message>
        <source>notification.mount.success.body</source>
        <translation>%@ ist eingebunden</translation>
    </message>
    <message>
        <source>notification.mount.success.title</source>
        <translation>NAS verbunden</translation>
    </message>
    <message>
        <source>notification.transfer.download.body</source>
        <translation>%@ wurde heruntergeladen</translation>
    </message>
    <message>
        <source>notification.transfer.download.title</source>
        <translation>Download beendet</translation>
    </message>
    <message>
        <source>notification.transfer.upload.body</source>
        <translation>%@ wurde auf das NAS geladen</translation>
    </message>
    <message>
        <source>notification.transfer.upload.title</source>
        <translation>Upload beendet</translation>
    </message>
    <message>
        <source>notification.unmount.body</source>
        <translation>%@ ist getrennt</translation>
    </message>
    <message>
        <source>notification.unmount.title</source>
        <translation>NAS getrennt</translation>
    </message>
    <message>
        <source>settings.advanced.connectionTimeout</source>
        <translation>Verbindungs-Zeitlimit</translation>
    </message>
    <message>
        <source>settings.advanced.retry</source>
        <translation>Wiederholungen</translation>
    </message>
    <message>
        <source>settings.advanced.retry.hint</source>
        <translation>Was nach einem Fehlschlag geschieht. Der Abstand wächst mit jedem Versuch (exponentielles Back-off).</translation>
    </message>
    <message>
        <source>settings.advanced.retryCount</source>
        <translation>Anzahl der Versuche</translation>
    </message>
    <message>
        <source>settings.advanced.retryInterval</source>
        <translation>Abstand der Versuche</translation>
    </message>
    <message>
        <source>settings.advanced.smb</source>
        <translation>SMB-Protokoll</translation>
    </message>
    <message>
        <source>settings.advanced.smbVersion</source>
        <translation>Standard-SMB-Version</translation>
    </message>
    <message>
        <source>settings.advanced.timeout</source>
        <translation>Zeitlimits</translation>
    </message>
    <message>
        <source>settings.advanced.timeout.hint</source>
        <translation>Die längste Wartezeit auf eine NAS-Verbindung. Langsame Netzwerke brauchen mehr.</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup</source>
        <translation>Automatische Bereinigung</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup.toggle</source>
        <translation>Automatisch bereinigen</translation>
    </message>
    <message>
        <source>settings.cache.cleanupNow</source>
        <translation>Jetzt bereinigen</translation>
    </message>
    <message>
        <source>settings.cache.clearAll</source>
        <translation>Gesamten Cache leeren</translation>
    </message>
    <message>
        <source>settings.cache.diskSpace</source>
        <translation>Freier Speicher</translation>
    </message>
    <message>
        <source>settings.cache.entryCount</source>
        <translation>Dateien im Cache</translation>
    </message>
    <message>
        <source>settings.cache.hitRate</source>
        <translation>Trefferquote</translation>
    </message>
    <message>
        <source>settings.cache.lastCleanup</source>
        <translation>Letzte Bereinigung</translation>
    </message>
    <message>
        <source>settings.cache.lastRemoved</source>
        <translation>Entfernt</translation>
    </message>
    <message>
        <source>settings.cache.maxSize</source>
        <translation>Maximale Cache-Größe</translation>
    </message>
    <message>
        <source>settings.cache.totalSize</source>
        <translation>Belegter Platz</translation>
    </message>
    <message>
        <source>settings.cache.usage</source>
        <translation>Cache-Nutzung</translation>
    </message>
    <message>
        <source>settings.keepAlive.enabled</source>
        <translation>Verbindungen halten</translation>
    </message>
    <message>
        <source>settings.keepAlive.hint</source>
        <translation>Harbrix sieht in diesem Abstand nach eingebundenen Freigaben. Ist eine verschwunden, das Heimnetz aber da, wird sie wieder eingebunden.</translation>
    </message>
    <message>
        <source>settings.keepAlive.interval</source>
        <translation>Prüfen alle</translation>
    </message>
    <message>
        <source>settings.keepAlive.title</source>
        <translation>Verbindung halten</translation>
    </message>
    <message>
        <source>settings.language.app</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>settings.language.disclaimer</source>
        <translation>Manche Übersetzungen sind noch unvollständig; was fehlt, erscheint in der Grundsprache. Wir bitten um Entschuldigung.</translation>
    </message>
    <message>
        <source>settings.language.restartHint</source>
        <translation>Starten Sie das Programm nach einem Wechsel neu, damit er überall wirkt.</translation>
    </message>
    <message>
        <source>settings.language.select</source>
        <translation>Sprache wählen</translation>
    </message>
    <message>
        <source>settings.language.supported</source>
        <translation>Zu den Übersetzungen</translation>
    </message>
    <message>
        <source>settings.launch.atLogin</source>
        <translation>Beim Anmelden starten</translation>
    </message>
    <message>
        <source>settings.launch.atLogin.hint</source>
        <translation>Harbrix startet mit Ihrer Anmeldung und läuft im Infobereich.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount</source>
        <translation>Automatisches Einbinden</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.hint</source>
        <translation>Beim Start werden alle aktiven NAS mit passendem Netzwerk eingebunden.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.toggle</source>
        <translation>Beim Start einbinden</translation>
    </message>
    <message>
        <source>settings.launch.behavior</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>settings.launch.stability.binding</source>
        <translation>Netzwerkbindung: automatisch nur in passenden Netzwerken</translation>
    </message>
    <message>
        <source>settings.launch.stability.network</source>
        <translation>Entprellung: wartet nach einem Netzwerkwechsel 2 Sekunden</translation>
    </message>
    <message>
        <source>settings.launch.stability.retry</source>
        <translation>Back-off: neue Versuche nach 10s→30s→60s→300s</translation>
    </message>
    <message>
        <source>settings.launch.stability.title</source>
        <translation>Wie Verbindungen stabil bleiben</translation>
    </message>
    <message>
        <source>settings.launch.stability.wake</source>
        <translation>Ruhezustand: bindet nach dem Aufwachen wieder ein</translation>
    </message>
    <message>
        <source>settings.logging.actions</source>
        <translation>Aktionen</translation>
    </message>
    <message>
        <source>settings.logging.clear</source>
        <translation>Protokolle löschen</translation>
    </message>
    <message>
        <source>settings.logging.debug</source>
        <translation>Debug-Modus</translation>
    </message>
    <message>
        <source>settings.logging.debug.hint</source>
        <translation>Protokolliert ausführlich; kann Tempo kosten.</translation>
    </message>
    <message>
        <source>settings.logging.export</source>
        <translation>Protokolle exportieren</translation>
    </message>
    <message>
        <source>settings.logging.file</source>
        <translation>Ausgabe in Datei</translation>
    </message>
    <message>
        <source>settings.logging.fileSize</source>
        <translation>Größe der Protokolle</translation>
    </message>
    <message>
        <source>settings.logging.fileToggle</source>
        <translation>In Datei protokollieren</translation>
    </message>
    <message>
        <source>settings.logging.level</source>
        <translation>Protokollstufe</translation>
    </message>
    <message>
        <source>settings.logging.minLevel</source>
        <translation>Niedrigste Stufe</translation>
    </message>
    <message>
        <source>settings.logging.mode</source>
        <translation>Protokollmodus</translation>
    </message>
    <message>
        <source>settings.notification.enableAll</source>
        <translation>Mitteilungen erlauben</translation>
    </message>
    <message>
        <source>settings.notification.events</source>
        <translation>Ereignisse</translation>
    </message>
    <message>
        <source>settings.notification.global</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>settings.notification.reset</source>
        <translation>Standard wiederherstellen</translation>
    </message>
    <message>
        <source>settings.notification.systemHint</source>
        <translation>Achten Sie darauf, dass der Desktop Mitteilungen von Harbrix erlaubt.</translation>
    </message>
    <message>
        <source>settings.tab.advanced</source>
        <translation>Erweitert</translation>
    </message>
    <message>
        <source>settings.tab.cache</source>
        <translation>Cache</translation>
    </message>
    <message>
        <source>settings.tab.language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>settings.tab.launch</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>settings.tab.logging</source>
        <translation>Protokolle</translation>
    </message>
    <message>
        <source>settings.tab.notifications</source>
        <translation>Mitteilungen</translation>
    </message>
    <message>
        <source>status.failed</source>
        <translation>Fehlgeschlagen</translation>
    </message>
    <message>
        <source>status.failed.a11y</source>
        <translation>Fehlgeschlagen</translation>
    </message>
    <message>
        <source>status.idle</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>status.mounted</source>
        <translation>Eingebunden</translation>
    </message>
    <message>
        <source>status.mounting</source>
        <translation>Wird eingebunden...</translation>
    </message>
    <message>
        <source>status.offline</source>
        <translation>Offline</translation>
    </message>
    <message>
        <source>status.unmounting</source>
        <translation>Wird getrennt...</translation>
    </message>
    <message>
        <source>status.unmounting.a11y</source>
        <translation>Wird getrennt</translation>
    </message>
    <message>
        <source>transfer.activeCount</source>
        <translation>%lld aktiv</translation>
    </message>
    <message>
        <source>transfer.cancelled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>transfer.clearCompleted</source>
        <translation>Beendete Übertragungen entfernen</translation>
    </message>
    <message>
        <source>transfer.done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>transfer.eta</source>
        <translation>Noch %@</translation>
    </message>
    <message>
        <source>transfer.failed</source>
        <translation>Fehlgeschlagen</translation>
    </message>
    <message>
        <source>transfer.noTransfers</source>
        <translation>Keine Übertragungen</translation>
    </message>
    <message>
        <source>transfer.paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>transfer.queued</source>
        <translation>Wartet</translation>
    </message>
    <message>
        <source>transfer.title</source>
        <translation>Übertragungen</translation>
    </message>
    <message>
        <source>window.about.title</source>
        <translation>Über Harbrix</translation>
    </message>
    <message>
        <source>window.browser.title</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>window.main.title</source>
        <translation>Harbrix</translation>
    </message>
    <message>
        <source>window.settings.title</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Wird geladen...</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Im Dateimanager zeigen</translation>
    </message>
    <message>
        <source>Empty Folder</source>
        <translation>Leerer Ordner</translation>
    </message>
    <message>
        <source>Drag files here to upload</source>
        <translation>Dateien zum Hochladen hierher ziehen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>官网</source>
        <translation>Website</translation>
    </message>
    <message>
        <source>反馈</source>
        <translation>Feedback</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>Dokumentation</translation>
    </message>
</context>
</TS>
