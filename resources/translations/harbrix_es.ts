<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="zh_CN">
<context>
    <name>texts</name>
    <message>
        <source>browser.download</source>
        <translation>Descargar</translation>
    </message>
    <message>
        <source>browser.downloadEllipsis</source>
        <translation>Descargar...</translation>
    </message>
    <message>
        <source>browser.empty.hint</source>
        <translation>Monte un NAS desde la ventana principal para explorar sus archivos.</translation>
    </message>
    <message>
        <source>browser.empty.title</source>
        <translation>No hay ningún NAS montado</translation>
    </message>
    <message>
        <source>browser.fileExists</source>
        <translation>El archivo ya existe</translation>
    </message>
    <message>
        <source>browser.fileExistsMessage</source>
        <translation>«%@» ya existe en esta ubicación.</translation>
    </message>
    <message>
        <source>browser.open</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>browser.openInFinder</source>
        <translation>Abrir en el gestor de archivos</translation>
    </message>
    <message>
        <source>browser.overwrite</source>
        <translation>Sobrescribir</translation>
    </message>
    <message>
        <source>browser.quickLook</source>
        <translation>Vista previa</translation>
    </message>
    <message>
        <source>browser.rename</source>
        <translation>Cambiar nombre</translation>
    </message>
    <message>
        <source>browser.showInFinder</source>
        <translation>Mostrar en el gestor de archivos</translation>
    </message>
    <message>
        <source>browser.skip</source>
        <translation>Omitir</translation>
    </message>
    <message>
        <source>common.add</source>
        <translation>Añadir</translation>
    </message>
    <message>
        <source>common.cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>common.close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>common.delete</source>
        <translation>Eliminar</translation>
    </message>
    <message>
        <source>common.save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>filesystem.offline.empty</source>
        <translation>El NAS está desconectado. No hay archivos de esta carpeta en la caché.</translation>
    </message>
    <message>
        <source>language.system</source>
        <translation>Idioma del sistema</translation>
    </message>
    <message>
        <source>main.about</source>
        <translation>Acerca de Harbrix</translation>
    </message>
    <message>
        <source>main.addNAS</source>
        <translation>Añadir NAS</translation>
    </message>
    <message>
        <source>main.addNASTooltip</source>
        <translation>Añadir una nueva configuración de NAS</translation>
    </message>
    <message>
        <source>main.emptyDetailHint</source>
        <translation>Elija una configuración de la lista de la izquierda o pulse el botón de arriba para añadir un NAS nuevo.</translation>
    </message>
    <message>
        <source>main.mountedFoldersTitle</source>
        <translation>Carpetas montadas</translation>
    </message>
    <message>
        <source>main.nasList</source>
        <translation>Lista de NAS</translation>
    </message>
    <message>
        <source>main.noConfigs</source>
        <translation>No hay ningún NAS configurado</translation>
    </message>
    <message>
        <source>main.openInFinder</source>
        <translation>Abrir carpeta</translation>
    </message>
    <message>
        <source>main.openSettings</source>
        <translation>Abrir las preferencias</translation>
    </message>
    <message>
        <source>main.selectOrAddNAS</source>
        <translation>Seleccionar o añadir un NAS</translation>
    </message>
    <message>
        <source>menubar.about</source>
        <translation>Acerca de Harbrix</translation>
    </message>
    <message>
        <source>menubar.browseFiles</source>
        <translation>  Explorar archivos...</translation>
    </message>
    <message>
        <source>menubar.checkForUpdates</source>
        <translation>Buscar actualizaciones...</translation>
    </message>
    <message>
        <source>menubar.icon.accessibility</source>
        <translation>Estado de Harbrix</translation>
    </message>
    <message>
        <source>menubar.mountAll</source>
        <translation>Montar todo ahora</translation>
    </message>
    <message>
        <source>menubar.noConfigs</source>
        <translation>No hay ningún NAS configurado</translation>
    </message>
    <message>
        <source>menubar.openMainWindow</source>
        <translation>Abrir la ventana principal</translation>
    </message>
    <message>
        <source>menubar.openSettings</source>
        <translation>Preferencias...</translation>
    </message>
    <message>
        <source>menubar.quit</source>
        <translation>Salir de Harbrix</translation>
    </message>
    <message>
        <source>menubar.recentFiles</source>
        <translation>Archivos recientes</translation>
    </message>
    <message>
        <source>menubar.unmountAll</source>
        <translation>Desmontar todo ahora</translation>
    </message>
    <message>
        <source>nas.address</source>
        <translation>Dirección</translation>
    </message>
    <message>
        <source>nas.addressPlaceholder</source>
        <translation>p. ej., 192.168.1.100</translation>
    </message>
    <message>
        <source>nas.auth</source>
        <translation>Autenticación</translation>
    </message>
    <message>
        <source>nas.authMethod</source>
        <translation>Método de autenticación</translation>
    </message>
    <message>
        <source>nas.autoMount</source>
        <translation>Montar automáticamente</translation>
    </message>
    <message>
        <source>nas.basicInfo</source>
        <translation>General</translation>
    </message>
    <message>
        <source>nas.connectionFailed</source>
        <translation>Error de conexión: %@</translation>
    </message>
    <message>
        <source>nas.connectionSuccess</source>
        <translation>Conexión correcta (latencia: %@ ms)</translation>
    </message>
    <message>
        <source>nas.customMountPoint</source>
        <translation>Punto de montaje personalizado</translation>
    </message>
    <message>
        <source>nas.mount</source>
        <translation>Montar</translation>
    </message>
    <message>
        <source>nas.mountError</source>
        <translation>Problema de montaje</translation>
    </message>
    <message>
        <source>nas.mountOptions</source>
        <translation>Opciones de montaje</translation>
    </message>
    <message>
        <source>nas.mountPointExample1</source>
        <translation>Ejemplo: ~/HarbrixVolumes/MyNAS (recomendado, se crea automáticamente)</translation>
    </message>
    <message>
        <source>nas.mountPointExample2</source>
        <translation>Ejemplo: /mnt/MyNAS (hay que crear la carpeta manualmente)</translation>
    </message>
    <message>
        <source>nas.mountPointHelp</source>
        <translation>Dónde se monta el recurso compartido. Déjelo vacío para usar ~/HarbrixVolumes/&lt;nombre&gt;. Nota: las carpetas fuera de su carpeta personal, como las de /mnt/, deben crearse manualmente.</translation>
    </message>
    <message>
        <source>nas.mountPointPlaceholder</source>
        <translation>Vacío: ruta predeterminada</translation>
    </message>
    <message>
        <source>nas.mounting</source>
        <translation>Montando...</translation>
    </message>
    <message>
        <source>nas.name</source>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>nas.namePlaceholder</source>
        <translation>p. ej., NAS de casa</translation>
    </message>
    <message>
        <source>nas.networkBinding</source>
        <translation>Restricción de red</translation>
    </message>
    <message>
        <source>nas.networkBinding.currentIP</source>
        <translation>Red actual: %@</translation>
    </message>
    <message>
        <source>nas.networkBinding.hint</source>
        <translation>Este NAS solo se monta automáticamente en las redes que coinciden. Siempre se puede montar manualmente.</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange</source>
        <translation>Intervalo de IP (CIDR)</translation>
    </message>
    <message>
        <source>nas.networkBinding.ipRange.placeholder</source>
        <translation>p. ej., 192.168.3.0/24</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.allNetworks</source>
        <translation>Todas las redes</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentIP</source>
        <translation>IP actual</translation>
    </message>
    <message>
        <source>nas.networkBinding.preset.currentNetwork</source>
        <translation>Red actual</translation>
    </message>
    <message>
        <source>nas.networkBinding.ssid.add</source>
        <translation>Nombre de la wifi</translation>
    </message>
    <message>
        <source>nas.networkBinding.strategy</source>
        <translation>Restringir por</translation>
    </message>
    <message>
        <source>nas.networkMismatch.confirm</source>
        <translation>Conectar de todos modos</translation>
    </message>
    <message>
        <source>nas.networkMismatch.message</source>
        <translation>La red actual no está entre las permitidas para este NAS, por lo que la conexión puede fallar. ¿Intentarlo de todos modos?</translation>
    </message>
    <message>
        <source>nas.networkMismatch.title</source>
        <translation>La red no coincide</translation>
    </message>
    <message>
        <source>nas.openInFinder</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>nas.password</source>
        <translation>Contraseña</translation>
    </message>
    <message>
        <source>nas.passwordPlaceholder</source>
        <translation>Contraseña de acceso</translation>
    </message>
    <message>
        <source>nas.protocol</source>
        <translation>Protocolo</translation>
    </message>
    <message>
        <source>nas.readOnly</source>
        <translation>Montar como solo lectura</translation>
    </message>
    <message>
        <source>nas.sharePath</source>
        <translation>Ruta compartida</translation>
    </message>
    <message>
        <source>nas.sharePathPlaceholder</source>
        <translation>p. ej., /shared/media</translation>
    </message>
    <message>
        <source>nas.smbVersion</source>
        <translation>Versión de SMB</translation>
    </message>
    <message>
        <source>nas.testConnection</source>
        <translation>Probar conexión</translation>
    </message>
    <message>
        <source>nas.testingConnection</source>
        <translation>Probando la conexión...</translation>
    </message>
    <message>
        <source>nas.unmount</source>
        <translation>Desmontar</translation>
    </message>
    <message>
        <source>nas.username</source>
        <translation>Nombre de usuario</translation>
    </message>
    <message>
        <source>nas.usernamePlaceholder</source>
        <translation>Usuario de acceso</translation>
    </message>
    <message>
        <source>network.status.allMismatch</source>
        <translation>La red no coincide</translation>
    </message>
    <message>
        <source>network.status.ipMismatch</source>
        <translation>La IP no coincide</translation>
    </message>
    <message>
        <source>network.status.matched</source>
        <translation>La red coincide</translation>
    </message>
    <message>
        <source>network.status.ssidMismatch</source>
        <translation>El SSID no coincide</translation>
    </message>
    <message>
        <source>nfs.auth</source>
        <translation>Autenticación de NFS</translation>
    </message>
    <message>
        <source>nfs.error.emptySharePath</source>
        <translation>La ruta exportada de NFS no puede estar vacía</translation>
    </message>
    <message>
        <source>nfs.error.invalidArgument</source>
        <translation>mount_nfs recibió un argumento no válido. Compruebe la dirección del servidor NFS y la ruta exportada. Por ahora solo se admite NFSv4.</translation>
    </message>
    <message>
        <source>nfs.error.sudoRequired</source>
        <translation>Montar NFS requiere privilegios de root. Configure sudoers en un terminal para permitir mount_nfs sin contraseña, o monte el recurso manualmente y use un punto de montaje personalizado.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.detail</source>
        <translation>Opciones fijas: vers=4 (NFSv4), tcp (transporte TCP), noresvport (puerto sin privilegios); al montar como solo lectura se añade ro.</translation>
    </message>
    <message>
        <source>nfs.mountOptions.title</source>
        <translation>Opciones de montaje de NFSv4</translation>
    </message>
    <message>
        <source>nfs.noAuthNote</source>
        <translation>NFS no necesita nombre de usuario ni contraseña. El acceso lo controla la configuración de exportaciones (exports) del servidor NFS.</translation>
    </message>
    <message>
        <source>nfs.sharePath</source>
        <translation>Ruta exportada de NFS</translation>
    </message>
    <message>
        <source>nfs.sharePathPlaceholder</source>
        <translation>p. ej., / o /volume1/shared</translation>
    </message>
    <message>
        <source>nfs.versionNote</source>
        <translation>Por ahora solo se admite NFSv4 (mediante TCP, desde un puerto sin privilegios)</translation>
    </message>
    <message>
        <source>notification.action.retry</source>
        <translation>Reintentar</translation>
    </message>
    <message>
        <source>notification.event.cacheCleanup</source>
        <translation>Limpieza de la caché</translation>
    </message>
    <message>
        <source>notification.event.mountFailure</source>
        <translation>Error de montaje</translation>
    </message>
    <message>
        <source>notification.event.mountSuccess</source>
        <translation>Montaje correcto</translation>
    </message>
    <message>
        <source>notification.event.networkChange</source>
        <translation>Cambio de red</translation>
    </message>
    <message>
        <source>notification.event.transferComplete</source>
        <translation>Transferencia completada</translation>
    </message>
    <message>
        <source>notification.event.transferFailed</source>
        <translation>Error de transferencia</translation>
    </message>
    <message>
        <source>notification.event.unmount</source>
        <translation>Desmontaje</translation>
    </message>
    <message>
        <source>notification.mount.failure.body</source>
        <translation>%1$@: %2$@</translation>
    </message>
    <message>
        <source>notification.mount.failure.title</source>
        <translation>No se pudo conectar con el NAS</translation>
    </message>
    <message>
        <source>notification.mount.success.body</source>
        <translation>Se ha montado %@</translation>
    </message>
    <message>
        <source>notification.mount.success.title</source>
        <translation>NAS conectado</translation>
    </message>
    <message>
        <source>notification.transfer.download.body</source>
        <translation>Se ha descargado %@</translation>
    </message>
    <message>
        <source>notification.transfer.download.title</source>
        <translation>Descarga completada</translation>
    </message>
    <message>
        <source>notification.transfer.upload.body</source>
        <translation>Se ha subido %@ al NAS</translation>
    </message>
    <message>
        <source>notification.transfer.upload.title</source>
        <translation>Subida completada</translation>
    </message>
    <message>
        <source>notification.unmount.body</source>
        <translation>Se ha desmontado %@</translation>
    </message>
    <message>
        <source>notification.unmount.title</source>
        <translation>NAS desconectado</translation>
    </message>
    <message>
        <source>settings.advanced.connectionTimeout</source>
        <translation>Tiempo de espera de conexión</translation>
    </message>
    <message>
        <source>settings.advanced.retry</source>
        <translation>Reintentos</translation>
    </message>
    <message>
        <source>settings.advanced.retry.hint</source>
        <translation>Qué hacer cuando falla un montaje. El intervalo aumenta con cada intento (espera exponencial).</translation>
    </message>
    <message>
        <source>settings.advanced.retryCount</source>
        <translation>Número de reintentos</translation>
    </message>
    <message>
        <source>settings.advanced.retryInterval</source>
        <translation>Intervalo entre reintentos</translation>
    </message>
    <message>
        <source>settings.advanced.smb</source>
        <translation>Protocolo SMB</translation>
    </message>
    <message>
        <source>settings.advanced.smbVersion</source>
        <translation>Versión de SMB predeterminada</translation>
    </message>
    <message>
        <source>settings.advanced.timeout</source>
        <translation>Tiempos de espera</translation>
    </message>
    <message>
        <source>settings.advanced.timeout.hint</source>
        <translation>Tiempo máximo de espera para conectar con un NAS. Un tiempo mayor ayuda en redes lentas.</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup</source>
        <translation>Limpieza automática</translation>
    </message>
    <message>
        <source>settings.cache.autoCleanup.toggle</source>
        <translation>Limpiar automáticamente</translation>
    </message>
    <message>
        <source>settings.cache.cleanupNow</source>
        <translation>Limpiar ahora</translation>
    </message>
    <message>
        <source>settings.cache.clearAll</source>
        <translation>Vaciar toda la caché</translation>
    </message>
    <message>
        <source>settings.cache.diskSpace</source>
        <translation>Espacio libre en disco</translation>
    </message>
    <message>
        <source>settings.cache.entryCount</source>
        <translation>Archivos en la caché</translation>
    </message>
    <message>
        <source>settings.cache.hitRate</source>
        <translation>Tasa de aciertos</translation>
    </message>
    <message>
        <source>settings.cache.lastCleanup</source>
        <translation>Última limpieza</translation>
    </message>
    <message>
        <source>settings.cache.lastRemoved</source>
        <translation>Archivos eliminados</translation>
    </message>
    <message>
        <source>settings.cache.maxSize</source>
        <translation>Tamaño máximo de la caché</translation>
    </message>
    <message>
        <source>settings.cache.totalSize</source>
        <translation>Espacio usado</translation>
    </message>
    <message>
        <source>settings.cache.usage</source>
        <translation>Uso de la caché</translation>
    </message>
    <message>
        <source>settings.keepAlive.enabled</source>
        <translation>Mantener las conexiones</translation>
    </message>
    <message>
        <source>settings.keepAlive.hint</source>
        <translation>Harbrix comprueba periódicamente la conexión con los NAS montados. Si se pierde mientras sigue en su red doméstica, intenta volver a montarlos automáticamente.</translation>
    </message>
    <message>
        <source>settings.keepAlive.interval</source>
        <translation>Intervalo de comprobación</translation>
    </message>
    <message>
        <source>settings.keepAlive.title</source>
        <translation>Mantenimiento de la conexión</translation>
    </message>
    <message>
        <source>settings.language.app</source>
        <translation>Idioma de la aplicación</translation>
    </message>
    <message>
        <source>settings.language.disclaimer</source>
        <translation>Es posible que algunas traducciones estén incompletas; los textos que falten se muestran en inglés. Seguimos mejorándolas y lamentamos las molestias.</translation>
    </message>
    <message>
        <source>settings.language.restartHint</source>
        <translation>Después de cambiar el idioma se recomienda reiniciar la aplicación para que se aplique en todas partes.</translation>
    </message>
    <message>
        <source>settings.language.select</source>
        <translation>Elegir idioma</translation>
    </message>
    <message>
        <source>settings.language.supported</source>
        <translation>Acerca de las traducciones</translation>
    </message>
    <message>
        <source>settings.launch.atLogin</source>
        <translation>Iniciar al entrar en la sesión</translation>
    </message>
    <message>
        <source>settings.launch.atLogin.hint</source>
        <translation>Harbrix se inicia automáticamente al entrar en la sesión y permanece en la bandeja del sistema.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount</source>
        <translation>Montaje automático</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.hint</source>
        <translation>Al iniciarse la aplicación se montan automáticamente todos los NAS activados cuya red coincida.</translation>
    </message>
    <message>
        <source>settings.launch.autoMount.toggle</source>
        <translation>Montar al iniciar</translation>
    </message>
    <message>
        <source>settings.launch.behavior</source>
        <translation>Inicio</translation>
    </message>
    <message>
        <source>settings.launch.stability.binding</source>
        <translation>Restricción de red: montaje automático solo en las redes domésticas que coinciden</translation>
    </message>
    <message>
        <source>settings.launch.stability.network</source>
        <translation>Cambios de red: espera 2 segundos a que la red se estabilice antes de montar</translation>
    </message>
    <message>
        <source>settings.launch.stability.retry</source>
        <translation>Espera exponencial: reintenta tras 10s→30s→60s→300s</translation>
    </message>
    <message>
        <source>settings.launch.stability.title</source>
        <translation>Cómo se mantienen estables las conexiones</translation>
    </message>
    <message>
        <source>settings.launch.stability.wake</source>
        <translation>Suspensión: vuelve a montar automáticamente al reanudar el sistema</translation>
    </message>
    <message>
        <source>settings.logging.actions</source>
        <translation>Acciones</translation>
    </message>
    <message>
        <source>settings.logging.clear</source>
        <translation>Borrar los registros</translation>
    </message>
    <message>
        <source>settings.logging.debug</source>
        <translation>Modo de depuración</translation>
    </message>
    <message>
        <source>settings.logging.debug.hint</source>
        <translation>Registra información de depuración detallada; puede afectar al rendimiento.</translation>
    </message>
    <message>
        <source>settings.logging.export</source>
        <translation>Exportar los registros</translation>
    </message>
    <message>
        <source>settings.logging.file</source>
        <translation>Salida a archivo</translation>
    </message>
    <message>
        <source>settings.logging.fileSize</source>
        <translation>Tamaño de los archivos de registro</translation>
    </message>
    <message>
        <source>settings.logging.fileToggle</source>
        <translation>Escribir en un archivo de registro</translation>
    </message>
    <message>
        <source>settings.logging.level</source>
        <translation>Nivel de registro</translation>
    </message>
    <message>
        <source>settings.logging.minLevel</source>
        <translation>Nivel mínimo</translation>
    </message>
    <message>
        <source>settings.logging.mode</source>
        <translation>Modo de registro</translation>
    </message>
    <message>
        <source>settings.notification.enableAll</source>
        <translation>Activar todas las notificaciones</translation>
    </message>
    <message>
        <source>settings.notification.events</source>
        <translation>Eventos</translation>
    </message>
    <message>
        <source>settings.notification.global</source>
        <translation>General</translation>
    </message>
    <message>
        <source>settings.notification.reset</source>
        <translation>Restaurar los valores predeterminados</translation>
    </message>
    <message>
        <source>settings.notification.systemHint</source>
        <translation>Asegúrese de que la configuración del sistema permite las notificaciones de Harbrix.</translation>
    </message>
    <message>
        <source>settings.tab.advanced</source>
        <translation>Avanzado</translation>
    </message>
    <message>
        <source>settings.tab.cache</source>
        <translation>Caché</translation>
    </message>
    <message>
        <source>settings.tab.language</source>
        <translation>Idioma</translation>
    </message>
    <message>
        <source>settings.tab.launch</source>
        <translation>Inicio</translation>
    </message>
    <message>
        <source>settings.tab.logging</source>
        <translation>Registros</translation>
    </message>
    <message>
        <source>settings.tab.notifications</source>
        <translation>Notificaciones</translation>
    </message>
    <message>
        <source>status.failed</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>status.failed.a11y</source>
        <translation>Error de montaje</translation>
    </message>
    <message>
        <source>status.idle</source>
        <translation>Inactivo</translation>
    </message>
    <message>
        <source>status.mounted</source>
        <translation>Montado</translation>
    </message>
    <message>
        <source>status.mounting</source>
        <translation>Montando...</translation>
    </message>
    <message>
        <source>status.offline</source>
        <translation>Sin conexión</translation>
    </message>
    <message>
        <source>status.unmounting</source>
        <translation>Desmontando...</translation>
    </message>
    <message>
        <source>status.unmounting.a11y</source>
        <translation>Desmontando</translation>
    </message>
    <message numerus="yes">
        <source>transfer.activeCount</source>
        <translation>
            <numerusform>%lld activa</numerusform>
            <numerusform>%lld activas</numerusform>
        </translation>
    </message>
    <message>
        <source>transfer.cancelled</source>
        <translation>Cancelada</translation>
    </message>
    <message>
        <source>transfer.clearCompleted</source>
        <translation>Quitar las transferencias completadas</translation>
    </message>
    <message>
        <source>transfer.done</source>
        <translation>Completada</translation>
    </message>
    <message>
        <source>transfer.eta</source>
        <translation>Tiempo restante: %@</translation>
    </message>
    <message>
        <source>transfer.failed</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>transfer.noTransfers</source>
        <translation>No hay transferencias</translation>
    </message>
    <message>
        <source>transfer.paused</source>
        <translation>En pausa</translation>
    </message>
    <message>
        <source>transfer.queued</source>
        <translation>En cola</translation>
    </message>
    <message>
        <source>transfer.stop.confirm</source>
        <translation>Detener</translation>
    </message>
    <message>
        <source>transfer.stop.message</source>
        <translation>Lo que aún no se ha copiado no se copiará.</translation>
    </message>
    <message>
        <source>transfer.stop.title</source>
        <translation>¿Detener las transferencias?</translation>
    </message>
    <message>
        <source>transfer.title</source>
        <translation>Transferencias</translation>
    </message>
    <message>
        <source>window.about.title</source>
        <translation>Acerca de Harbrix</translation>
    </message>
    <message>
        <source>window.browser.title</source>
        <translation>Explorador de archivos</translation>
    </message>
    <message>
        <source>window.main.title</source>
        <translation>Harbrix</translation>
    </message>
    <message>
        <source>window.settings.title</source>
        <translation>Preferencias</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Cargando...</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Tamaño</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modificado</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Mostrar en el gestor de archivos</translation>
    </message>
    <message>
        <source>Empty Folder</source>
        <translation>Carpeta vacía</translation>
    </message>
    <message>
        <source>Drag files here to upload</source>
        <translation>Arrastre archivos aquí para subirlos</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>main.discardChanges</source>
        <translation>Descartar cambios</translation>
    </message>
    <message>
        <source>main.edited</source>
        <translation>Editado</translation>
    </message>
    <message>
        <source>main.notSaved</source>
        <translation>No se pueden guardar los cambios: %@. Se perderán al salir de Harbrix.</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.body</source>
        <translation>El archivo se conserva como %@</translation>
    </message>
    <message>
        <source>notification.settingsDamaged.title</source>
        <translation>Los ajustes estaban dañados</translation>
    </message>
    <message>
        <source>官网</source>
        <translation>Sitio web</translation>
    </message>
    <message>
        <source>反馈</source>
        <translation>Comentarios</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>Documentación</translation>
    </message>
</context>
</TS>
