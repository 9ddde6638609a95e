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
        <translation>Hängen Sie im Hauptfenster ein NAS ein, um dessen Dateien zu durchsuchen.</translation>
    </message>
    <message>
        <source>browser.empty.title</source>
        <translation>Kein NAS eingehängt</translation>
    </message>
    <message>
        <source>browser.fileExists</source>
        <translation>Datei bereits vorhanden</translation>
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
        <translation>Im Dateimanager anzeigen</translation>
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
        <translation>Speichern</translation>
    </message>
    <message>
        <source>filesystem.offline.empty</source>
        <translation>Das NAS ist nicht verbunden. Aus diesem Ordner sind keine Dateien zwischengespeichert.</translation>
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
        <translation>Wählen Sie links eine Konfiguration aus oder legen Sie mit der Schaltfläche oben ein neues NAS an.</translation>
    </message>
    <message>
        <source>main.mountedFoldersTitle</source>
        <translation>Eingehängte Ordner</translation>
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
        <translation>Jetzt alle einhängen</translation>
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
        <translation>Zuletzt verwendete Dateien</translation>
    </message>
    <message>
        <source>menubar.unmountAll</source>
        <translation>Jetzt alle aushängen</translation>
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
        <translation>Anmeldeverfahren</translation>
    </message>
    <message>
        <source>nas.autoMount</source>
        <translation>Automatisch einhängen</translation>
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
        <translation>Verbunden (Latenz: %@ ms)</translation>
    </message>
    <message>
        <source>nas.customMountPoint</source>
        <translation>Eigener Einhängepunkt</translation>
    </message>
    <message>
        <source>nas.mount</source>
        <translation>Einhängen</translation>
    </message>
    <message>
        <source>nas.mountError</source>
        <translation>Problem beim Einhängen</translation>
    </message>
    <message>
        <source>nas.mountOptions</source>
        <translation>Einhängeoptionen</translation>
    </message>
    <message>
        <source>nas.mountPointExample1</source>
        <translation>Beispiel: ~/HarbrixVolumes/MyNAS (empfohlen, wird automatisch angelegt)</translation>
    </message>
    <message>
        <source>nas.mountPointExample2</source>
        <translation>Beispiel: /mnt/MyNAS (der Ordner muss von Hand angelegt werden)</translation>
    </message>
    <message>
        <source>nas.mountPointHelp</source>
        <translation>Wo die Freigabe eingehängt wird. Leer lassen für ~/HarbrixVolumes/&lt;Name&gt;. Hinweis: Ordner außerhalb des persönlichen Ordners, etwa unter /mnt/, müssen von Hand angelegt werden.</translation>
    </message>
    <message>
        <source>nas.mountPointPlaceholder</source>
        <translation>Leer lassen für den Standard</translation>
    </message>
    <message>
        <source>nas.mounting</source>
        <translation>Wird eingehängt...</translation>
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
        <translation>Dieses NAS wird nur in passenden Netzwerken automatisch eingehängt. Von Hand lässt es sich immer einhängen.</translation>
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
        <translation>WLAN-Name</translation>
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
        <translation>Dieses NAS ist nicht an das aktuelle Netzwerk gebunden; die Verbindung schlägt möglicherweise fehl. Trotzdem versuchen?</translation>
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
        <translation>Schreibgeschützt einhängen</translation>
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
        <translation>Aushängen</translation>
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
        <translation>mount_nfs hat ein ungültiges Argument erhalten. Prüfen Sie die Adresse des NFS-Servers und den Exportpfad. Derzeit wird nur NFSv4 unterstützt.</translation>
    </message>
    <message>
        <source>nfs.error.sudoRequired</source>
        <translation>Das Einhängen von NFS erfordert root-Rechte. Erlauben Sie mount_nfs in sudoers ohne Passwort, oder hängen Sie die Freigabe von Hand ein und verwenden Sie einen eigenen Einhängepunkt.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.detail</source>
        <translation>Feste Optionen: vers=4 (NFSv4), tcp (TCP-Übertragung), noresvport (nicht privilegierter Port); beim schreibgeschützten Einhängen zusätzlich ro.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.title</source>
        <translation>NFSv4-Einhängeoptionen</translation>
    </message>
    <message>
        <source>nfs.noAuthNote</source>
        <translation>NFS benötigt weder Benutzername noch Passwort. Den Zugriff regelt die Exportkonfiguration (exports) des NFS-Servers.</translation>
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
        <translation>Derzeit wird nur NFSv4 unterstützt (über TCP, von einem nicht privilegierten Port)</translation>
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
        <translation>Einhängen fehlgeschlagen</translation>
    </message>
    <message>
        <source>notification.event.mountSuccess</source>
        <translation>Einhängen erfolgreich</translation>
    </message>
    <message>
        <source>notification.event.networkChange</source>
        <translation>Netzwerkwechsel</translation>
    </message>
    <message>
        <source>notification.event.transferComplete</source>
        <translation>Übertragung abgeschlossen</translation>
    </message>
    <message>
        <source>notification.event.transferFailed</source>
        <translation>Übertragung fehlgeschlagen</translation>
    </message>
    <message>
        <source>notification.event.unmount</source>
        <translation>Aushängen</translation>
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
        <translation>%@ wurde eingehängt</translation>
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
        <translation>Download abgeschlossen</translation>
    </message>
    <message>
        <source>notification.transfer.upload.body</source>
        <translation>%@ wurde auf das NAS hochgeladen</translation>
    </message>
    <message>
        <source>notification.transfer.upload.title</source>
        <translation>Upload abgeschlossen</translation>
    </message>
    <message>
        <source>notification.unmount.body</source>
        <translation>%@ wurde ausgehängt</translation>
    </message>
    <message>
        <source>notification.unmount.title</source>
        <translation>NAS getrennt</translation>
    </message>
    <message>
        <source>settings.advanced.connectionTimeout</source>
        <translation>Zeitlimit für Verbindungen</translation>
    </message>
    <message>
        <source>settings.advanced.retry</source>
        <translation>Wiederholungen</translation>
    </message>
    <message>
        <source>settings.advanced.retry.hint</source>
        <translation>Was nach einem fehlgeschlagenen Einhängen geschieht. Der Abstand wächst mit jedem Versuch (exponentielles Backoff).</translation>
    </message>
    <message>
        <source>settings.advanced.retryCount</source>
        <translation>Anzahl der Wiederholungen</translation>
    </message>
    <message>
        <source>settings.advanced.retryInterval</source>
        <translation>Abstand der Wiederholungen</translation>
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
        <translation>Die längste Wartezeit auf eine Verbindung zum NAS. In langsamen Netzwerken hilft ein höheres Zeitlimit.</translation>
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
        <translation>Freier Speicherplatz</translation>
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
        <translation>Entfernte Dateien</translation>
    </message>
    <message>
        <source>settings.cache.maxSize</source>
        <translation>Maximale Cache-Größe</translation>
    </message>
    <message>
        <source>settings.cache.totalSize</source>
        <translation>Belegter Speicherplatz</translation>
    </message>
    <message>
        <source>settings.cache.usage</source>
        <translation>Cache-Nutzung</translation>
    </message>
    <message>
        <source>settings.keepAlive.enabled</source>
        <translation>Verbindungen aufrechterhalten</translation>
    </message>
    <message>
        <source>settings.keepAlive.hint</source>
        <translation>Harbrix prüft regelmäßig die Verbindung zu eingehängten NAS. Geht sie verloren, während Sie noch im Heimnetz sind, wird das NAS automatisch wieder eingehängt.</translation>
    </message>
    <message>
        <source>settings.keepAlive.interval</source>
        <translation>Prüfintervall</translation>
    </message>
    <message>
        <source>settings.keepAlive.title</source>
        <translation>Verbindungserhaltung</translation>
    </message>
    <message>
        <source>settings.language.app</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>settings.language.disclaimer</source>
        <translation>Manche Übersetzungen sind möglicherweise noch unvollständig; fehlende Texte erscheinen auf Englisch. Wir arbeiten daran und bitten um Entschuldigung.</translation>
    </message>
    <message>
        <source>settings.language.restartHint</source>
        <translation>Starten Sie die Anwendung nach einem Sprachwechsel neu, damit er überall wirksam wird.</translation>
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
        <translation>Bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>settings.launch.atLogin.hint</source>
        <translation>Harbrix startet bei Ihrer Anmeldung automatisch und läuft im Infobereich.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount</source>
        <translation>Automatisches Einhängen</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.hint</source>
        <translation>Beim Start werden alle aktivierten NAS mit passendem Netzwerk automatisch eingehängt.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.toggle</source>
        <translation>Beim Start einhängen</translation>
    </message>
    <message>
        <source>settings.launch.behavior</source>
        <translation>Startverhalten</translation>
    </message>
    <message>
        <source>settings.launch.stability.binding</source>
        <translation>Netzwerkbindung: automatisches Einhängen nur in passenden Heimnetzen</translation>
    </message>
    <message>
        <source>settings.launch.stability.network</source>
        <translation>Entprellung: wartet nach einem Netzwerkwechsel 2 Sekunden, bevor eingehängt wird</translation>
    </message>
    <message>
        <source>settings.launch.stability.retry</source>
        <translation>Exponentielles Backoff: neue Versuche nach 10s→30s→60s→300s</translation>
    </message>
    <message>
        <source>settings.launch.stability.title</source>
        <translation>So bleiben Verbindungen stabil</translation>
    </message>
    <message>
        <source>settings.launch.stability.wake</source>
        <translation>Ruhezustand: hängt nach dem Aufwachen automatisch wieder ein</translation>
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
        <translation>Zeichnet ausführliche Informationen zur Fehlersuche auf; das kann die Leistung beeinträchtigen.</translation>
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
        <translation>Größe der Protokolldateien</translation>
    </message>
    <message>
        <source>settings.logging.fileToggle</source>
        <translation>In Protokolldatei schreiben</translation>
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
        <translation>Alle Benachrichtigungen aktivieren</translation>
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
        <translation>Stellen Sie sicher, dass die Systemeinstellungen Benachrichtigungen von Harbrix erlauben.</translation>
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
        <translation>Benachrichtigungen</translation>
    </message>
    <message>
        <source>status.failed</source>
        <translation>Fehlgeschlagen</translation>
    </message>
    <message>
        <source>status.failed.a11y</source>
        <translation>Einhängen fehlgeschlagen</translation>
    </message>
    <message>
        <source>status.idle</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>status.mounted</source>
        <translation>Eingehängt</translation>
    </message>
    <message>
        <source>status.mounting</source>
        <translation>Wird eingehängt...</translation>
    </message>
    <message>
        <source>status.offline</source>
        <translation>Offline</translation>
    </message>
    <message>
        <source>status.unmounting</source>
        <translation>Wird ausgehängt...</translation>
    </message>
    <message>
        <source>status.unmounting.a11y</source>
        <translation>Wird ausgehängt</translation>
    </message>
    <message numerus="yes">
        <source>transfer.activeCount</source>
        <translation>
            <numerusform>%lld aktiv</numerusform>
            <numerusform>%lld aktiv</numerusform>
        </translation>
    </message>
    <message>
        <source>transfer.cancelled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>transfer.clearCompleted</source>
        <translation>Abgeschlossene Übertragungen entfernen</translation>
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
        <translation>In Warteschlange</translation>
    </message>
    <message>
        <source>transfer.stop.confirm</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>transfer.stop.message</source>
        <translation>Was noch nicht kopiert ist, wird ausgelassen.</translation>
    </message>
    <message>
        <source>transfer.stop.title</source>
        <translation>Übertragungen anhalten?</translation>
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
        <translation>Im Dateimanager anzeigen</translation>
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
        <source>main.discardChanges</source>
        <translation>Änderungen verwerfen</translation>
    </message>
    <message>
        <source>main.edited</source>
        <translation>Bearbeitet</translation>
    </message>
    <message>
        <source>main.notSaved</source>
        <translation>Änderungen lassen sich nicht speichern: %@. Beim Beenden von Harbrix gehen sie verloren.</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.body</source>
        <translation>Die Datei bleibt als %@ erhalten</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.title</source>
        <translation>Die Einstellungen waren beschädigt</translation>
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
